// qt_text_field FILE TITLE: a window with a text field of several lines that records its text and every key
// press.

#include "qt_observer.h"
#include "record.h"

#include <QApplication>
#include <QPlainTextEdit>

#include <cstdlib>

using corvandi::targets::QtObserver;
using corvandi::targets::Record;

int main(int count, char** arguments)
{
    QApplication application(count, arguments);
    if (count != 3)
        return EXIT_FAILURE;
    Record record(arguments[1]);
    QtObserver observer(record);
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
