#pragma once

#include "core/data/store.h"

#include "support/fake_files.h"
#include "support/recording_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

namespace corvandi {

/// A store on files in memory, whose writes happen when the test runs the queue.
class StoreFixture : public ::testing::Test {
protected:
    /// Creates the store, or creates it anew as the program's next start does.
    Store& start(const char* locale = "en-US")
    {
        queue.runAll();
        store_ = std::make_unique<Store>(directory, files, queue, log, Locale(QLatin1String(locale)));
        return *store_;
    }
    [[nodiscard]] std::vector<QString> writes() const { return files.pathsOf(testing::FileOperation::write); }

    const QString directory = QStringLiteral("/home/user/.local/share/Corvandi");
    const QString historyPath = directory + QStringLiteral("/history.json");
    const QString vocabPath = directory + QStringLiteral("/vocab.json");
    const QString historyAside = historyPath + QStringLiteral(".corrupt");
    const QString vocabAside = vocabPath + QStringLiteral(".corrupt");

    testing::FakeFileSystem files;
    testing::RecordingLog log;
    testing::ManualWorkQueue queue;

private:
    std::unique_ptr<Store> store_;
};

} // namespace corvandi
