#include "settings_ui/appearing.h"

#include <QEvent>
#include <QGuiApplication>

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

} // namespace corvandi
