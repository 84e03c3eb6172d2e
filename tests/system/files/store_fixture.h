#pragma once

#include "core/data/store.h"
#include "system/files/posix_file_system.h"
#include "system/files/serial_work_queue.h"

#include "real_folder.h"
#include "support/recording_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvandi {

/// A run of the program, as far as the store goes. At its end everything has been written.
struct StoreRun {
    StoreRun(const QString& directory, SystemLog& log)
        : queue(QStringLiteral("store test"), log)
        , store(directory, files, queue, log, Locale(QStringLiteral("en-US")))
    {
    }

    PosixFileSystem files;
    SerialWorkQueue queue;
    Store store;
};

class StoreOnDisk : public ::testing::Test {
protected:
    /// One run that adds an entry to the history.
    void dictate(const char* text)
    {
        StoreRun(directory, log).store.addHistory(QString::fromUtf8(text), {0});
    }
    /// The history of a run; the newest text first.
    [[nodiscard]] QStringList texts()
    {
        QStringList texts;
        const StoreRun run(directory, log);
        for (const HistoryEntry& entry : run.store.history())
            texts.push_back(entry.text);
        return texts;
    }

    testing::RealFolder folder;
    const QString directory = folder.path("share/Corvandi");
    const QString history = directory + QStringLiteral("/history.json");
    const QString vocab = directory + QStringLiteral("/vocab.json");
    const QString aside = history + QStringLiteral(".corrupt");
    testing::RecordingLog log;
};

} // namespace corvandi
