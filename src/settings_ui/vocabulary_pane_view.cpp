#include "settings_ui/vocabulary_pane_view.h"

#include "settings_ui/appearing.h"
#include "settings_ui/kit/child.h"
#include "settings_ui/kit/empty_state.h"

#include <QApplication>
#include <QDir>
#include <QHBoxLayout>
#include <QIcon>
#include <QMenu>
#include <QStyle>

#include <utility>

namespace corvandi {
namespace {

constexpr int spacing = 8;

QString translated(const char* text)
{
    return QCoreApplication::translate("VocabularyPane", text);
}

/// Menus and buttons would take an ampersand as the mark of a key.
QString asMenuText(QString text)
{
    return text.replace(QLatin1Char('&'), QStringLiteral("&&"));
}

QIcon iconOf(const QString& nameOrPath, const QStyle& style)
{
    const QIcon icon = QDir::isAbsolutePath(nameOrPath) ? QIcon(nameOrPath) : QIcon::fromTheme(nameOrPath);
    return icon.isNull() ? style.standardIcon(QStyle::SP_DesktopIcon) : icon;
}

/// The scope of an item; the first one stands for all applications.
VocabScope scopeAt(const QComboBox& scopes, int index)
{
    const QVariant bundleID = scopes.itemData(index);
    if (bundleID.isNull())
        return vocab_scope::Global{};
    return vocab_scope::App{bundleID.toString()};
}

} // namespace

VocabularyPaneView::VocabularyPaneView(VocabularyPane& pane, const AppCatalog& catalog, Browse browse,
                                       QWidget* parent)
    : GroupedForm(parent)
    , pane_(pane)
    , catalog_(catalog)
    , browse_(std::move(browse))
{
    addScope();
    list_ = &addSection(translated(QT_TRANSLATE_NOOP("VocabularyPane", "Replacements")));
    addNewRule();
    addRemove();
    connect(&pane_, &VocabularyPane::changed, this, &VocabularyPaneView::showState);
    connect(&pane_, &VocabularyPane::newRuleChanged, this, &VocabularyPaneView::showNewRule);
    whenAppearing(*this, [this] {
        pane_.reloadApps();
        pane_.reloadRules();
    });
    showState();
    showNewRule();
}

VocabularyPaneView::~VocabularyPaneView() = default;

void VocabularyPaneView::addScope()
{
    kit::FormSection& section = addSection();
    auto& controls = kit::makeChild<QWidget>(section);
    auto& line = kit::makeLayout<QHBoxLayout>(controls, {}, spacing);
    const QString label = translated(QT_TRANSLATE_NOOP("VocabularyPane", "Apply replacements to"));
    scopes_ = &kit::makeChild<kit::PopUpButton>(controls);
    scopes_->setAccessibleName(label);
    plus_ = &kit::makeChild<kit::IconButton>(controls, Symbol::plus,
                                             translated(QT_TRANSLATE_NOOP("VocabularyPane", "Add an app")),
                                             kit::IconButtonRole::standard);
    line.addWidget(scopes_);
    line.addWidget(plus_);
    section.addRow(label, controls);
    connect(scopes_, &QComboBox::activated, &pane_,
            [this](int index) { pane_.setScope(scopeAt(*scopes_, index)); });
    connect(plus_, &QAbstractButton::clicked, this, &VocabularyPaneView::offerApps);
}

void VocabularyPaneView::addNewRule()
{
    auto& row = kit::makeChild<QWidget>(list_->card());
    auto& line = kit::makeLayout<QHBoxLayout>(row, {}, spacing);
    newFrom_ = &kit::makeChild<kit::TextField>(row, std::nullopt);
    newFrom_->setPlaceholder(translated(QT_TRANSLATE_NOOP("VocabularyPane", "Heard")));
    newTo_ = &kit::makeChild<kit::TextField>(row, std::nullopt);
    newTo_->setPlaceholder(translated(QT_TRANSLATE_NOOP("VocabularyPane", "Replace with")));
    add_ = &kit::makeChild<kit::Button>(
        row, translated(QT_TRANSLATE_NOOP("VocabularyPane", "Add Replacement")), kit::ButtonRole::standard);
    line.addWidget(newFrom_, 1);
    line.addWidget(newTo_, 1);
    line.addWidget(add_);
    list_->addWidget(row);
    connect(newFrom_, &QLineEdit::textEdited, &pane_, &VocabularyPane::setNewFrom);
    connect(newTo_, &QLineEdit::textEdited, &pane_, &VocabularyPane::setNewTo);
    connect(add_, &QPushButton::clicked, &pane_, &VocabularyPane::add);
}

void VocabularyPaneView::addRemove()
{
    removal_ = &addSection();
    remove_ = &kit::makeChild<kit::Button>(*removal_, QString(), kit::ButtonRole::destructive);
    removal_->addWidget(*remove_);
    connect(remove_, &QPushButton::clicked, &pane_, &VocabularyPane::removeCurrentApp);
}

void VocabularyPaneView::offerApps()
{
    auto& menu = kit::makeChild<QMenu>(*this);
    menu.setAttribute(Qt::WA_DeleteOnClose);
    for (const AppInfo& app : catalog_.runningApps()) {
        menu.addAction(iconOf(catalog_.icon(app.bundleID), *style()), asMenuText(app.name), &pane_,
                       [this, app] { pane_.addApp(app); });
    }
    menu.addSeparator();
    menu.addAction(translated(QT_TRANSLATE_NOOP("VocabularyPane", "Browse…")), this,
                   [this] { browse_(*window(), [this](const AppInfo& app) { pane_.addApp(app); }); });
    menu.popup(plus_->mapToGlobal(QPoint(0, plus_->height())));
}

void VocabularyPaneView::showState()
{
    showScopes();
    showRules();
    showEmptyState();
    const auto* app = std::get_if<vocab_scope::App>(&pane_.scope());
    removal_->setVisible(app != nullptr);
    if (app) {
        remove_->setText(
            translated(QT_TRANSLATE_NOOP("VocabularyPane", "Remove %1")).arg(pane_.name(app->bundleID)));
    }
}

void VocabularyPaneView::showScopes()
{
    scopes_->clear();
    scopes_->addItem(translated(QT_TRANSLATE_NOOP("VocabularyPane", "Global")));
    for (const AppVocab& app : pane_.apps())
        scopes_->addItem(iconOf(catalog_.icon(app.bundleID), *style()), app.name, app.bundleID);
    for (int index = 0; index < scopes_->count(); ++index) {
        if (scopeAt(*scopes_, index) == pane_.scope())
            scopes_->setCurrentIndex(index);
    }
}

void VocabularyPaneView::showRules()
{
    const std::vector<VocabRule>& rules = pane_.rules();
    std::vector<ReplacementRowView*> shown;
    auto old = rows_.begin();
    for (const VocabRule& rule : rules) {
        // Rules keep their order, so that a row that is not the next rule's has gone.
        while (old != rows_.end() && (*old)->rule().id != rule.id)
            retire(**old++);
        if (old == rows_.end()) {
            auto made = makeRow(rule);
            list_->card().insertRow(static_cast<int>(shown.size()), *made);
            made->show();
            shown.push_back(made.release());
        } else {
            (*old)->setRule(rule);
            shown.push_back(*old++);
        }
    }
    while (old != rows_.end())
        retire(**old++);
    rows_ = std::move(shown);
}

void VocabularyPaneView::retire(ReplacementRowView& row)
{
    // Its own button may be in the middle of a click. The focus that it loses must not store its texts.
    disconnect(qApp, nullptr, &row, nullptr);
    list_->card().layout()->removeWidget(&row);
    row.hide();
    row.deleteLater();
}

void VocabularyPaneView::showEmptyState()
{
    const QString text = pane_.rules().empty() ? pane_.emptyDescription() : QString();
    if (text == emptyText_)
        return;
    emptyText_ = text;
    emptyState_.reset();
    if (text.isEmpty())
        return;
    emptyState_ = std::make_unique<kit::EmptyState>(
        Symbol::characterBookClosed, translated(QT_TRANSLATE_NOOP("VocabularyPane", "No Replacements")),
        text);
    list_->card().insertRow(0, *emptyState_);
    emptyState_->show();
}

void VocabularyPaneView::showNewRule()
{
    if (newFrom_->text() != pane_.newFrom())
        newFrom_->setText(pane_.newFrom());
    if (newTo_->text() != pane_.newTo())
        newTo_->setText(pane_.newTo());
    add_->setEnabled(!pane_.isAddDisabled());
}

std::unique_ptr<ReplacementRowView> VocabularyPaneView::makeRow(const VocabRule& rule)
{
    return std::make_unique<ReplacementRowView>(
        rule, [this, rule](const QString& from, const QString& to) { pane_.update(rule, from, to); },
        [this, rule] { pane_.deleteRule(rule); });
}

} // namespace corvandi
