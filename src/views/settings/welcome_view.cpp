#include "views/settings/welcome_view.h"

#include "views/kit/card.h"
#include "views/kit/child.h"
#include "views/settings/managed_widget_windows.h"
#include "views/settings/permissions_pane_view.h"
#include "views/symbols/symbol.h"

#include <QCoreApplication>
#include <QHideEvent>
#include <QPainter>
#include <QVBoxLayout>

namespace corvandi {
namespace {

constexpr int windowWidth = 420;
constexpr int padding = 28;
constexpr int spacing = 20;
constexpr int iconSize = 88;
constexpr int buttonHeight = 38;

QString translated(const char* text)
{
    return QCoreApplication::translate("WelcomeView", text);
}

/// The application's icon, sharp on every screen that the window moves to.
class IconView : public QWidget {
public:
    explicit IconView(QWidget* parent)
        : QWidget(parent)
        , icon_(applicationIcon())
    {
        setFixedSize(iconSize, iconSize);
    }

protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(rect(), icon_.pixmap(size(), devicePixelRatioF()));
    }

private:
    QIcon icon_;
};

kit::TextLabel& centred(QWidget& parent, const QString& text, kit::TextStyle style)
{
    auto& label = kit::makeChild<kit::TextLabel>(parent, text, style);
    label.setAlignment(Qt::AlignCenter);
    return label;
}

} // namespace

WelcomeView::WelcomeView(std::unique_ptr<Welcome> welcome, QWidget* parent)
    : QWidget(parent)
    , welcome_(std::move(welcome))
{
    setFixedWidth(windowWidth);
    auto& column = kit::makeLayout<QVBoxLayout>(*this, {padding, padding, padding, padding}, spacing);
    column.addWidget(&kit::makeChild<IconView>(*this), 0, Qt::AlignHCenter);
    column.addWidget(&centred(*this, translated(QT_TRANSLATE_NOOP("WelcomeView", "Welcome to Corvandi")),
                              kit::TextStyle::largeTitle));
    column.addWidget(&centred(
        *this,
        translated(QT_TRANSLATE_NOOP("WelcomeView", "Hold your hotkey, speak, and your words are inserted "
                                                    "wherever you are typing. Everything runs on-device.")),
        kit::TextStyle::secondary));
    PermissionsModel& permissions = welcome_->permissions();
    const PermissionRows rows = welcome_->rows();
    auto& card = kit::makeChild<kit::Card>(*this);
    auto& microphone = kit::makeChild<PermissionRowView>(card, rows.microphone, PermissionRowStyle::welcome);
    auto& accessibility =
        kit::makeChild<PermissionRowView>(card, rows.accessibility, PermissionRowStyle::welcome);
    card.addRow(microphone);
    card.addRow(accessibility);
    column.addWidget(&card);
    auto& done = kit::makeChild<kit::Button>(*this, welcome_->buttonTitle(), kit::ButtonRole::prominent);
    done.setMinimumSize(windowWidth - 2 * padding, buttonHeight);
    column.addWidget(&done);
    connect(&done, &QPushButton::clicked, this, [this] { welcome_->getStarted(); });
    connect(&permissions, &PermissionsModel::changed, this,
            [this, &permissions, &microphone, &accessibility, &done] {
                microphone.setState(permissions.microphone());
                accessibility.setState(permissions.accessibility());
                done.setText(welcome_->buttonTitle());
            });
    whenAppearing(*this, [this] { welcome_->appear(); });
    done.setFocus();
}

WelcomeView::~WelcomeView() = default;

void WelcomeView::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    if (!event->spontaneous())
        welcome_->disappear();
}

} // namespace corvandi
