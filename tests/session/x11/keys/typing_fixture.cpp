#include "session/x11/keys/typing_fixture.h"

#include <algorithm>
#include <stdexcept>

namespace corvandi::testing {

TypingTarget::TypingTarget()
{
    process_.start(QStringLiteral(TYPING_TARGET), {});
    if (!says("focus"))
        throw std::runtime_error("the typing target does not get the focus");
}

TypingTarget::~TypingTarget()
{
    process_.kill();
    process_.waitForFinished();
}

QString TypingTarget::text()
{
    lines_.clear();
    process_.write("read\n");
    QByteArray answer;
    (void)waitUntil([&] {
        readLines();
        const auto found = std::find_if(lines_.begin(), lines_.end(),
                                        [](const QByteArray& line) { return line.startsWith("text "); });
        if (found == lines_.end())
            return false;
        answer = found->mid(5);
        return true;
    });
    return QString::fromUtf8(QByteArray::fromBase64(answer));
}

::testing::AssertionResult TypingTarget::comesToHold(const QString& expected)
{
    QString held;
    if (waitUntil([&] { return (held = text()) == expected; }))
        return ::testing::AssertionSuccess();
    qsizetype same = 0;
    while (same < held.size() && same < expected.size() && held[same] == expected[same])
        ++same;
    return ::testing::AssertionFailure()
           << "after " << same << " equal units it holds \"" << held.mid(same, 40).toStdString()
           << "\" instead of \"" << expected.mid(same, 40).toStdString() << "\"";
}

void TypingTarget::clear()
{
    process_.write("clear\n");
    (void)says("cleared");
    lines_.clear();
}

bool TypingTarget::says(const QByteArray& line, qsizetype times)
{
    return waitUntil([&] {
        readLines();
        return lines_.count(line) >= times;
    });
}

void TypingTarget::readLines()
{
    while (process_.canReadLine()) {
        lines_.push_back(process_.readLine());
        lines_.back().chop(1);
    }
}

bool TypingFixture::type(const QString& text)
{
    const auto source = keyboard.createSource(text);
    if (!source)
        return false;
    postText(*source, text);
    return true;
}

void postText(KeyEventSource& source, const QString& text)
{
    constexpr size_t unitsPerEvent = 20;
    const std::u16string units = text.toStdU16String();
    for (size_t start = 0; start < units.size();) {
        size_t length = std::min(unitsPerEvent, units.size() - start);
        if (start + length < units.size() && QChar(units[start + length - 1]).isHighSurrogate())
            --length;
        SyntheticKeyEvent event{virtual_key::none, KeyDirection::down, 0, units.substr(start, length)};
        source.post(event);
        event.direction = KeyDirection::up;
        source.post(event);
        start += length;
    }
}

} // namespace corvandi::testing
