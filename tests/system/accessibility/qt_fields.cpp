// A window with one field of each kind. Says on its standard output which one has the focus.
// Arguments: the window's title, and for how many milliseconds out of each few more it is too busy to
// answer anybody.

#include <QAbstractListModel>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QThread>
#include <QTimer>
#include <QVBoxLayout>

#include <cstdio>

namespace {

class MillionRows : public QAbstractListModel {
public:
    [[nodiscard]] int rowCount(const QModelIndex& parent) const override
    {
        return parent.isValid() ? 0 : 1'000'000;
    }
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override
    {
        return role == Qt::DisplayRole ? index.row() : QVariant();
    }
};

class Fields : public QWidget {
public:
    Fields()
    {
        // Before the label becomes a stop of the tabulator key, because this changes its policy.
        label_.setTextInteractionFlags(Qt::TextSelectableByKeyboard);
        add(line_, "line");
        add(password_, "password");
        add(area_, "area");
        add(editableBox_, "editable-box");
        add(listBox_, "list-box");
        add(number_, "number");
        add(readOnlyLine_, "read-only-line");
        add(readOnlyArea_, "read-only-area");
        add(label_, "label");
        add(check_, "check");
        add(button_, "button");
        add(list_, "list");
        password_.setEchoMode(QLineEdit::Password);
        area_.setTabChangesFocus(true);
        editableBox_.setEditable(true);
        editableBox_.addItem(QStringLiteral("one"));
        listBox_.addItem(QStringLiteral("one"));
        list_.setUniformItemSizes(true);
        list_.setModel(&rows_);
        readOnlyLine_.setText(QStringLiteral("fixed"));
        readOnlyLine_.setReadOnly(true);
        readOnlyArea_.setReadOnly(true);
        readOnlyArea_.setTabChangesFocus(true);
        label_.setText(QStringLiteral("to be read"));
    }

private:
    void add(QWidget& widget, const char* name)
    {
        widget.setObjectName(QLatin1String(name));
        widget.setFocusPolicy(Qt::StrongFocus);
        layout_.addWidget(&widget);
    }

    QVBoxLayout layout_{this};
    QLineEdit line_;
    QLineEdit password_;
    QPlainTextEdit area_;
    QComboBox editableBox_;
    QComboBox listBox_;
    QSpinBox number_;
    QLineEdit readOnlyLine_;
    QPlainTextEdit readOnlyArea_;
    QLabel label_;
    QCheckBox check_;
    QPushButton button_;
    MillionRows rows_;
    QListView list_;
};

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QObject::connect(&application, &QApplication::focusChanged, &application, [](QWidget*, QWidget* now) {
        if (now) {
            std::puts(("focus " + now->objectName().toUtf8()).constData());
            std::fflush(stdout);
        }
    });
    Fields fields;
    fields.setWindowTitle(application.arguments().value(1));
    fields.show();

    QTimer work;
    const auto workTime = application.arguments().value(2).toULong();
    QObject::connect(&work, &QTimer::timeout, &work, [workTime] { QThread::msleep(workTime); });
    if (workTime > 0)
        work.start(std::chrono::milliseconds(5));
    return QApplication::exec();
}
