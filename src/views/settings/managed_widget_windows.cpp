#include "views/settings/managed_widget_windows.h"

#include "views/symbols/symbol.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QLayout>
#include <QMainWindow>
#include <QScreen>

#include <memory>
#include <utility>

namespace corvandi {
namespace {

class AppearanceWatch : public QObject {
public:
    AppearanceWatch(QWidget& widget, std::function<void()> action)
        : QObject(&widget)
        , widget_(widget)
        , action_(std::move(action))
    {
        widget.installEventFilter(this);
        connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
            if (state == Qt::ApplicationActive && widget_.isVisible())
                action_();
        });
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Show && !event->spontaneous())
            action_();
        return QObject::eventFilter(watched, event);
    }

private:
    QWidget& widget_;
    std::function<void()> action_;
};

} // namespace

void whenAppearing(QWidget& widget, std::function<void()> action)
{
    // The widget owns it.
    (void)std::make_unique<AppearanceWatch>(widget, std::move(action)).release();
}

namespace {

constexpr QSize settingsSize(660, 460);

/// Closing hides it, and says so before. It is a main window for those who read the screen to people: they
/// take a plain widget for a part of some window.
class Window : public QMainWindow {
public:
    Window(std::unique_ptr<QWidget> content, ManagedWindows::Callback willClose)
        : willClose_(std::move(willClose))
    {
        setCentralWidget(content.release());
        setWindowIcon(applicationIcon());
        setAttribute(Qt::WA_QuitOnClose, false);
    }

protected:
    void closeEvent(QCloseEvent* event) override
    {
        event->accept();
        if (isVisible() && willClose_)
            willClose_();
    }

private:
    ManagedWindows::Callback willClose_;
};

class ManagedWidgetWindow : public ManagedWindow {
public:
    ManagedWidgetWindow(std::unique_ptr<Window> window, ManagedWidgetWindows::BringToFront bringToFront)
        : window_(std::move(window))
        , bringToFront_(std::move(bringToFront))
    {
    }

    void center() override
    {
        const QScreen* screen = QGuiApplication::primaryScreen();
        if (!screen)
            return;
        window_->layout()->activate();
        // The frame's place; before it is shown nobody knows how wide its edges will be.
        // And the toolkit may have measured them while the window manager was still making the frame.
        QRect frame = window_->frameGeometry();
        if (!frame.contains(window_->geometry()))
            frame = window_->geometry();
        frame.moveCenter(screen->availableGeometry().center());
        window_->move(frame.topLeft());
    }
    void activate() override
    {
        window_->setWindowState(window_->windowState() & ~Qt::WindowMinimized);
        window_->show();
        window_->raise();
        window_->activateWindow();
        if (bringToFront_)
            bringToFront_(*window_);
    }
    void close() override
    {
        if (window_->isVisible())
            window_->close();
    }
    [[nodiscard]] bool isVisible() const override { return window_->isVisible(); }

private:
    std::unique_ptr<Window> window_;
    ManagedWidgetWindows::BringToFront bringToFront_;
};

} // namespace

ManagedWidgetWindows::ManagedWidgetWindows(Contents contents, BringToFront bringToFront)
    : contents_(std::move(contents))
    , bringToFront_(std::move(bringToFront))
{
}

std::unique_ptr<ManagedWindow> ManagedWidgetWindows::makeSettingsWindow(Callback willClose)
{
    auto window = std::make_unique<Window>(contents_.settings(), std::move(willClose));
    window->setWindowTitle(QCoreApplication::translate("AppDelegate", "Corvandi Settings"));
    window->resize(settingsSize);
    return std::make_unique<ManagedWidgetWindow>(std::move(window), bringToFront_);
}

std::unique_ptr<ManagedWindow> ManagedWidgetWindows::makeWelcomeWindow(Callback getStarted,
                                                                       Callback willClose)
{
    auto window = std::make_unique<Window>(contents_.welcome(std::move(getStarted)), std::move(willClose));
    window->setWindowTitle(QCoreApplication::translate("AppDelegate", "Welcome to Corvandi"));
    window->setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint);
    window->layout()->setSizeConstraint(QLayout::SetFixedSize);
    return std::make_unique<ManagedWidgetWindow>(std::move(window), bringToFront_);
}

} // namespace corvandi
