// qt_form FILE TITLE: a window with a text field, a password field and a button, reached in this order
// with the Tab key. Records the text of both fields, the field first, and when an element gets the focus.

#include "qt_observer.h"
#include "record.h"

#include <QApplication>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>

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

    QWidget window;
    QLineEdit field;
    QLineEdit password;
    password.setEchoMode(QLineEdit::Password);
    QPushButton button(QStringLiteral("Send"));
    QFormLayout layout(&window);
    layout.addRow(QStringLiteral("Text"), &field);
    layout.addRow(QStringLiteral("Password"), &password);
    layout.addRow(&button);
    const auto note = [&] { record.text((field.text() + password.text()).toStdString()); };
    QObject::connect(&field, &QLineEdit::textChanged, note);
    QObject::connect(&password, &QLineEdit::textChanged, note);
    constexpr QSize size(600, 120);
    window.resize(size);
    window.setWindowTitle(QString::fromLocal8Bit(arguments[2]));
    window.show();
    record.ready();
    return QApplication::exec();
}
