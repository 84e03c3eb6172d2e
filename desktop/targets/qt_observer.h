#pragma once

#include "record.h"

#include <QKeyEvent>
#include <QObject>

namespace corvandi::targets {

/// Records the key presses that a Qt application gets, and when one of its widgets gets the keyboard. To be
/// installed as the application's event filter.
class QtObserver : public QObject {
public:
    explicit QtObserver(Record& record)
        : record_(record)
    {
    }

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override
    {
        // Each press is seen once: when it reaches the window, before widgets pass it on.
        if (event->type() == QEvent::KeyPress && receiver->isWindowType()) {
            const auto* key = static_cast<QKeyEvent*>(event);
            const bool withAlt = key->modifiers().testFlag(Qt::AltModifier);
            record_.key(key->nativeVirtualKey(), withAlt ? Record::Alt::down : Record::Alt::up);
        }
        if (event->type() == QEvent::FocusIn && receiver->isWidgetType())
            record_.focus();
        return false;
    }

private:
    Record& record_;
};

} // namespace corvandi::targets
