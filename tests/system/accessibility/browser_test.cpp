#include "session/x11/xcb_connection.h"
#include "support/event_loop.h"
#include "system/accessibility/accessible_object.h"
#include "system/accessibility/focus_fixture.h"
#include "system/accessibility/focus_search.h"

#include <QDir>
#include <QTemporaryDir>

namespace corvandi::testing {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

const std::vector<ExpectedField> pageFields{
    {"line", FocusTarget::editable, "AXTextField"},
    {"password", FocusTarget::secure, "AXTextField"},
    {"area", FocusTarget::editable, "AXTextArea"},
    {"rich", FocusTarget::editable, "AXTextArea"},
    {"rich-text-box", FocusTarget::editable, "AXTextArea"},
    {"search", FocusTarget::editable, "AXTextField", "AXSearchField"},
    {"email", FocusTarget::editable, "AXTextField"},
    {"number", FocusTarget::editable, "AXTextField"},
    {"suggesting", FocusTarget::editable, "AXComboBox"},
    {"list-box", FocusTarget::unknown, "AXPopUpButton"},
    {"read-only-line", FocusTarget::unknown, "AXStaticText"},
    {"read-only", FocusTarget::unknown, "AXGroup"},
    {"check", FocusTarget::unknown, "AXCheckBox"},
    {"button", FocusTarget::unknown, "AXButton"},
    {"link", FocusTarget::unknown, "AXLink"},
    {"inner-line", FocusTarget::editable, "AXTextField"},
    {"inner-password", FocusTarget::secure, "AXTextField"},
};

/// Searches for the focus, as is done for an application that has not told it yet.
class AccessibilityBus {
public:
    AccessibilityBus()
        : connection_(QDBusConnection::connectToBus(address(), name()))
    {
    }
    ~AccessibilityBus() { QDBusConnection::disconnectFromBus(name()); }

    AccessibilityBus(const AccessibilityBus&) = delete;
    AccessibilityBus& operator=(const AccessibilityBus&) = delete;

    /// Searches all windows of that process; nothing if it is too busy to answer.
    [[nodiscard]] std::optional<AccessibleTraits> focusedOf(pid_t process) const
    {
        BusReader reader(connection_, [](const QString&) {});
        const QDeadlineTimer deadline(seconds(2));
        const std::array listing{askChildren(registryRoot())};
        for (const ObjectRef& application : childrenIn(reader.ask(listing, deadline).front())) {
            const std::array owner{askProcess(application.bus)};
            if (numberIn(reader.ask(owner, deadline).front()) != static_cast<uint32_t>(process))
                continue;
            const auto found = findFocused(reader, {application}, SearchedWindows::all, deadline);
            const auto report = found ? reportOn(reader, *found, deadline) : ObjectReport{};
            if (report.outcome == ObjectReport::Outcome::told)
                return report.traits;
        }
        return std::nullopt;
    }

private:
    static QString name() { return QStringLiteral("search"); }
    static QString address()
    {
        const QString service = QStringLiteral("org.a11y.Bus");
        const QDBusMessage call = QDBusMessage::createMethodCall(service, QStringLiteral("/org/a11y/bus"),
                                                                 service, QStringLiteral("GetAddress"));
        return QDBusConnection::sessionBus().call(call).arguments().value(0).toString();
    }

    QDBusConnection connection_;
};

class BrowserTest : public FocusTest {
protected:
    BrowserTest() { profile_.setAutoRemove(false); }

    [[nodiscard]] std::unique_ptr<TargetApplication> startBrowser(const QStringList& options)
    {
        // As root it refuses its own sandbox; the page is ours.
        const QStringList always{QStringLiteral("--no-sandbox"), QStringLiteral("--no-first-run"),
                                 QStringLiteral("--user-data-dir=") + profile_.path(),
                                 QStringLiteral("file://" BROWSER_FIELDS)};
        return std::make_unique<TargetApplication>(QStringLiteral("chromium"), options + always);
    }

    /// Waits until the page says that this field of its has the focus.
    [[nodiscard]] bool pageHasFocusOn(const QString& field)
    {
        return waitUntil([&] { return activeTitle().startsWith(QStringLiteral("focus %1 ").arg(field)); },
                         seconds(20));
    }

private:
    [[nodiscard]] QString activeTitle() const
    {
        const auto active = wordsOf(x_, requestProperty(x_, x_.root(), activeWindow_));
        if (active.empty() || active.front() == XCB_WINDOW_NONE)
            return {};
        return QString::fromStdString(textOf(x_, requestProperty(x_, active.front(), title_)));
    }

    XcbConnection x_;
    xcb_atom_t activeWindow_ = x_.atom("_NET_ACTIVE_WINDOW");
    xcb_atom_t title_ = x_.atom("_NET_WM_NAME");
    /// Left to the desktop, which removes it when the browser's processes have ended.
    QTemporaryDir profile_{QDir::homePath() + QStringLiteral("/browser-XXXXXX")};
};

TEST_F(BrowserTest, EachFieldOfAPageAndTheAddressBarAreRecognised)
{
    const auto browser = startBrowser({QStringLiteral("--force-renderer-accessibility")});
    for (const ExpectedField& field : pageFields) {
        SCOPED_TRACE(field.name);
        if (&field != &pageFields.front())
            pressKey(QStringLiteral("Tab"));
        ASSERT_TRUE(pageHasFocusOn(QLatin1String(field.name)));
        expectRecognised(field);
    }
    ASSERT_TRUE(isActive(*browser));
    pressKey(QStringLiteral("ctrl+l"));
    expectRecognised({"address bar", FocusTarget::editable, "AXTextField"});
}

TEST_F(BrowserTest, TheSearchPrefersAFieldToTheDocumentsThatClaimTheFocusAsWell)
{
    const auto browser = startBrowser({QStringLiteral("--force-renderer-accessibility")});
    ASSERT_TRUE(pageHasFocusOn(QStringLiteral("line")));
    expectRecognised(pageFields.front());
    std::optional<AccessibleTraits> found;
    const AccessibilityBus bus;
    ASSERT_TRUE(waitUntil(
        [&] {
            found = bus.focusedOf(browser->process());
            return found.has_value();
        },
        seconds(20)));
    EXPECT_EQ(focusedElementOf(*found).role, QStringLiteral("AXTextField"));
}

TEST_F(BrowserTest, APageThatIsNotExposedIsUnknown)
{
    const auto browser = startBrowser({});
    ASSERT_TRUE(pageHasFocusOn(QStringLiteral("line")));
    ASSERT_TRUE(isActive(*browser));
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(desktop.focusedElement(), std::nullopt);
        runFor(milliseconds(50));
    }
}

} // namespace
} // namespace corvandi::testing
