#include "system/accessibility/focus_fixture.h"

#include "support/event_loop.h"
#include "system/accessibility/focus_worker.h"

namespace corvandi::testing {
namespace {

/// Passwords are the only secure fields, so that their subrole need not be listed.
std::optional<QString> expectedSubrole(const ExpectedField& field)
{
    if (field.target == FocusTarget::secure)
        return QStringLiteral("AXSecureTextField");
    return field.subrole ? std::optional(QString(QLatin1String(field.subrole))) : std::nullopt;
}

std::string description(const std::optional<FocusedElement>& element)
{
    if (!element)
        return "unknown";
    const QString none = QStringLiteral("none");
    return "role " + element->role.value_or(none).toStdString() + ", subrole " +
           element->subrole.value_or(none).toStdString();
}

class CachedElement : public FocusedElementReader {
public:
    CachedElement(const FocusCache& cache, pid_t process)
        : cache_(cache)
        , process_(process)
    {
    }
    [[nodiscard]] std::optional<FocusedElement> focusedElement() override
    {
        return cache_.elementOf(process_);
    }

private:
    const FocusCache& cache_;
    pid_t process_;
};

} // namespace

UnaskedFocus::UnaskedFocus(SystemLog& log)
    : worker_(std::make_unique<FocusWorker>(cache_, log).release())
{
    worker_->moveToThread(&thread_);
    QObject::connect(&thread_, &QThread::started, worker_, &FocusWorker::start);
    QObject::connect(&thread_, &QThread::finished, worker_, &QObject::deleteLater);
    thread_.start();
}

UnaskedFocus::~UnaskedFocus()
{
    thread_.requestInterruption();
    thread_.quit();
    thread_.wait();
}

bool UnaskedFocus::knows(const TargetApplication& application) const
{
    return cache_.elementOf(application.process()).has_value();
}

bool UnaskedFocus::becomes(const TargetApplication& application, FocusTarget target) const
{
    CachedElement element(cache_, application.process());
    return waitUntil([&] { return FocusInspector(element).currentTarget() == target; },
                     std::chrono::seconds(20));
}

DesktopFocus::DesktopFocus(SystemLog& log)
    : focus_([this] { return activeProcess(); }, queue_, log)
{
}

std::optional<pid_t> DesktopFocus::activeProcess() const
{
    const auto window = activeWindow_.read();
    return window ? window->process : std::nullopt;
}

bool DesktopFocus::isRefreshed()
{
    bool isDone = false;
    const auto refresh = focus_.refresh([&isDone] { isDone = true; });
    return waitUntil([&isDone] { return isDone; });
}

std::unique_ptr<TargetApplication> FocusTest::startQtFields(const QString& title,
                                                            std::chrono::milliseconds busyTime)
{
    return shown(std::make_unique<TargetApplication>(QStringLiteral(QT_FIELDS),
                                                     QStringList{title, QString::number(busyTime.count())}));
}

std::unique_ptr<TargetApplication> FocusTest::startGtkFields(const QString& version, const QString& title)
{
    return shown(std::make_unique<TargetApplication>(
        QStringLiteral("/usr/bin/python3"), QStringList{QStringLiteral(GTK_FIELDS), version, title}));
}

std::unique_ptr<TargetApplication> FocusTest::shown(std::unique_ptr<TargetApplication> application)
{
    EXPECT_TRUE(application->hasFocusOn(QStringLiteral("line")));
    EXPECT_TRUE(isActive(*application));
    return application;
}

bool FocusTest::becomes(FocusTarget target)
{
    return waitUntil([&] { return inspector.currentTarget() == target; });
}

bool FocusTest::isActive(const TargetApplication& application)
{
    return waitUntil([&] { return desktop.activeProcess() == application.process(); });
}

void FocusTest::expectRecognised(const ExpectedField& field)
{
    EXPECT_TRUE(waitUntil([&] {
        const auto element = desktop.focusedElement();
        return element && element->role == QLatin1String(field.role) &&
               element->subrole == expectedSubrole(field) && inspector.currentTarget() == field.target;
    })) << description(desktop.focusedElement());
}

} // namespace corvandi::testing
