#pragma once

#include "session/x11/clipboard/x11_pasteboard.h"
#include "support/event_loop.h"
#include "system/process/qt_main_queue.h"

#include <QProcess>

#include <gtest/gtest.h>

#include <csignal>

namespace corvandi::testing {

/// Another program at the clipboard, ended with the test.
class Peer {
public:
    explicit Peer(const QStringList& arguments) { process_.start(QStringLiteral(CLIPBOARD_PEER), arguments); }
    ~Peer() { end(); }
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;

    [[nodiscard]] bool isReady()
    {
        return waitUntil([&] { return output().contains("ready\n"); });
    }
    /// As `isReady`, but without running the event loop.
    [[nodiscard]] bool isReadyBeforeTheNextTurn()
    {
        return process_.waitForReadyRead() && output() == "ready\n";
    }
    [[nodiscard]] QByteArray output()
    {
        output_ += process_.readAllStandardOutput();
        return output_;
    }
    void send(int signal) { kill(static_cast<pid_t>(process_.processId()), signal); }
    void end()
    {
        process_.kill();
        process_.waitForFinished();
    }
    /// Lets it run to its end; the exit code.
    [[nodiscard]] std::optional<int> finish()
    {
        if (!waitUntil([&] { return process_.state() == QProcess::NotRunning; }))
            return std::nullopt;
        return process_.exitCode();
    }

private:
    QProcess process_;
    QByteArray output_;
};

/// What another program gets when it asks for this form; nothing when it is refused.
inline std::optional<QByteArray> asSeenByOthers(const QString& target)
{
    Peer reader({QStringLiteral("read"), target});
    if (reader.finish() != 0)
        return std::nullopt;
    return reader.output();
}

/// The forms that another program is offered.
inline QList<QByteArray> formsSeenByOthers()
{
    Peer reader({QStringLiteral("forms")});
    EXPECT_EQ(reader.finish(), 0);
    return reader.output().split('\n');
}

class PasteboardTest : public ::testing::Test {
protected:
    using Reading = std::optional<std::optional<QString>>;

    /// Starts a reading whose result is put into what is returned.
    [[nodiscard]] std::shared_ptr<Reading> startReading() { return read(pasteboard); }

    [[nodiscard]] static std::shared_ptr<Reading> read(X11Pasteboard& from)
    {
        auto result = std::make_shared<Reading>();
        from.string().then([result](const std::optional<QString>& text) { *result = text; });
        return result;
    }

    /// The outcome of a reading from begin to end.
    [[nodiscard]] std::optional<QString> readNow()
    {
        const auto reading = startReading();
        EXPECT_TRUE(waitUntil([&] { return reading->has_value(); }));
        return reading->value_or(std::nullopt);
    }

    /// Takes the clipboard and puts a text there; false when that fails at the first attempt.
    bool writeAtOnce(const QString& text)
    {
        pasteboard.clearContents();
        return pasteboard.setString(text, pasteboard_type::string);
    }
    /// The same, once Qt has heard of what other programs have done to the clipboard before.
    bool write(const QString& text)
    {
        return waitUntil([&] { return writeAtOnce(text); });
    }

    QtMainQueue queue;
    X11Pasteboard pasteboard{queue};
};

} // namespace corvandi::testing
