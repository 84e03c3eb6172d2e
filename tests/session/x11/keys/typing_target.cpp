#include <QApplication>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QSocketNotifier>

#include <array>
#include <cstdio>

#include <unistd.h>

namespace {

void say(const QByteArray& line)
{
    std::fputs((line + '\n').constData(), stdout);
    std::fflush(stdout);
}

/// A text field that says which shortcuts it gets, and does nothing else with them.
class Field : public QPlainTextEdit {
protected:
    void keyPressEvent(QKeyEvent* event) override
    {
        constexpr auto shortcutModifiers = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
        if (event->modifiers() & shortcutModifiers) {
            if (event->key() != Qt::Key_unknown && event->key() != 0)
                say("shortcut " + QKeySequence(event->keyCombination()).toString().toUtf8());
            return;
        }
        QPlainTextEdit::keyPressEvent(event);
    }
    void focusInEvent(QFocusEvent* event) override
    {
        QPlainTextEdit::focusInEvent(event);
        say("focus");
    }
    void focusOutEvent(QFocusEvent* event) override
    {
        QPlainTextEdit::focusOutEvent(event);
        say("focus lost");
    }
};

} // namespace

/// An application with a text field and a menu bar. It answers "read" with "text " and what the field
/// holds (in base 64), and "clear" with "cleared".
int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QMainWindow window;
    window.menuBar()->addMenu(QStringLiteral("&File"))->addAction(QStringLiteral("Open"));
    auto* field = std::make_unique<Field>().release();
    window.setCentralWidget(field);
    window.show();

    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [field] {
        std::array<char, 64> buffer{};
        const auto size = read(STDIN_FILENO, buffer.data(), buffer.size());
        if (size <= 0)
            return QApplication::quit();
        const QByteArray command(buffer.data(), static_cast<qsizetype>(size));
        if (command.startsWith("read"))
            say("text " + field->toPlainText().toUtf8().toBase64());
        if (command.startsWith("clear")) {
            field->clear();
            say("cleared");
        }
    });
    return QApplication::exec();
}
