#include "typing_fixture.h"

#include "platform/linux/x11/modifier_masks.h"
#include "platform/linux/x11/xkb_protocol.h"
#include "platform/x11/x11_session.h"
#include "support/event_loop.h"

#include <QDeadlineTimer>

namespace corvandi::testing {
namespace {

using namespace std::chrono_literals;

/// An application records each character; asking more often would keep it from its work.
constexpr auto betweenLooks = 30ms;
constexpr auto patience = 30s;

QCoro::Task<> store(QCoro::Task<bool> task, std::shared_ptr<std::optional<bool>> result)
{
    *result = co_await task;
}

/// Applications record what Return sends to them: a carriage return in a terminal.
QString asRecorded(QString text)
{
    return text.replace(QLatin1Char('\n'), QLatin1Char('\r'));
}

::testing::AssertionResult difference(const QString& held, const QString& expected)
{
    qsizetype same = 0;
    while (same < held.size() && same < expected.size() && held[same] == expected[same])
        ++same;
    return ::testing::AssertionFailure()
           << held.size() << " units instead of " << expected.size() << "; after " << same << " equal ones \""
           << held.mid(same, 40).toStdString() << "\" instead of \"" << expected.mid(same, 40).toStdString()
           << "\"";
}

} // namespace

std::string nameOf(TargetKind kind)
{
    switch (kind) {
    case TargetKind::terminal:
        return "Terminal";
    case TargetKind::qtField:
        return "QtField";
    case TargetKind::gtkField:
        return "GtkField";
    }
    return {};
}

TypingTest::~TypingTest()
{
    setLocks(x11_mask::none);
    setGroup(0);
    EXPECT_TRUE(setLayout(QStringLiteral("us")));
}

void TypingTest::open(TargetKind kind)
{
    targetIsTerminal = kind == TargetKind::terminal;
    target.emplace(kind, folder.path().toStdString());
    // A window of the last test may still have had the focus when this one was looked for.
    constexpr uint8_t f12 = 96;
    ASSERT_TRUE(waitUntil([&] {
        person.strike(f12);
        runFor(betweenLooks);
        return !target->keyPresses().empty();
    }));
}

bool TypingTest::insert(const QString& text, InsertionMethod method)
{
    const auto result = std::make_shared<std::optional<bool>>();
    const auto task = store(injector.insert(text, method), result);
    EXPECT_TRUE(waitUntil([&] { return result->has_value(); }, patience));
    return result->value_or(false);
}

::testing::AssertionResult TypingTest::holds(const QString& expected)
{
    const QString recorded = asRecorded(expected);
    const QDeadlineTimer deadline(patience);
    QString held;
    while (!deadline.hasExpired()) {
        held = QString::fromStdString(target->text());
        if (held == recorded)
            return ::testing::AssertionSuccess();
        runFor(betweenLooks);
    }
    return difference(held, recorded);
}

QString TypingTest::textFor(TargetKind kind, int count) const
{
    return bench::mixedText(count,
                            kind == TargetKind::terminal ? bench::Lines::several : bench::Lines::one);
}

void TypingTest::setLocks(uint8_t modifiers)
{
    corvandi::setLocks(person.connection(), x11_mask::all, modifiers);
    person.connection().sync();
}

uint8_t TypingTest::locks()
{
    const auto state = readState(person.connection());
    return state ? state->locked : x11_mask::none;
}

void TypingTest::setGroup(uint8_t group)
{
    xcb_xkb_latch_lock_state(person.connection().get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, group, 0, 0, 0);
    person.connection().sync();
}

void TypingTest::latch(uint8_t modifiers)
{
    xcb_xkb_latch_lock_state(person.connection().get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 0, 0, modifiers,
                             modifiers, 0);
    person.connection().sync();
}

} // namespace corvandi::testing
