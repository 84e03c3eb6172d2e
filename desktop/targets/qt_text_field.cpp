// qt_text_field FILE TITLE: a window with a text field of several lines that records its text and every key
// press.

#include "record.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPlainTextEdit>

#include <cstdlib>

namespace {

using corvandi::targets::Record;

/// Sees each key press once: when it reaches the window, before widgets pass it on.
class Observer : public QObject {
public:
    explicit Observer(Record& record)
        : record_(record)
    {
    }

protected:
    bool eventFilter(QObject* receiver, QEvent* event) override
    {
        if (event->type() == QEvent::KeyPress && receiver->isWindowType()) {
            const auto* key = static_cast<QKeyEvent*>(event);
            const bool withAlt = key->modifiers().testFlag(Qt::AltModifier);
            record_.key(key->nativeVirtualKey(), withAlt ? Record::Alt::down : Record::Alt::up);
        }
        if (event->type() == QEvent::FocusIn && qobject_cast<QPlainTextEdit*>(receiver) != nullptr)
            record_.focus();
        return false;
    }

private:
    Record& record_;
};

} // namespace

int main(int count, char** arguments)
{
    QApplication application(count, arguments);
    if (count != 3)
        return EXIT_FAILURE;
    Record record(arguments[1]);
    Observer observer(record);
    application.installEventFilter(&observer);

    QPlainTextEdit field;
    QObject::connect(&field, &QPlainTextEdit::textChanged,
                     [&] { record.text(field.toPlainText().toStdString()); });
    field.setWindowTitle(QString::fromLocal8Bit(arguments[2]));
    constexpr QSize size(900, 60);
    field.resize(size);
    field.show();
    record.ready();
    return QApplication::exec();
}
