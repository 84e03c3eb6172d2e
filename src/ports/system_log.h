#pragma once

#include <QString>

namespace corvandi {

/// The system's log. Each message is one line that says what happened, never what the user dictated.
///
/// Thread: any, except the audio thread.
class SystemLog {
public:
    virtual ~SystemLog() = default;

    /// Writes `message` behind the program's name: "Corvandi: " and the message.
    void write(const QString& message) { writeLine(QStringLiteral("Corvandi: ") + message); }

protected:
    /// Writes one finished line. Must not throw; a log that is out of reach loses the line.
    virtual void writeLine(const QString& line) = 0;
};

} // namespace corvandi
