#include "views/settings/vocabulary_pane_view.h"

#include "views/kit/card.h"
#include "views/kit/child.h"
#include "views/kit/style.h"
#include "views/settings/managed_widget_windows.h"
#include "views/settings/replacement_row_view.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QMenu>

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
    addRules();
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
    icons_ = &kit::makeChild<AppIcons>(*this, catalog_, kit::metrics::iconSize, devicePixelRatioF());
    scopes_ = &kit::makeChild<kit::PopUpButton>(section);
    plus_ = &kit::makeChild<kit::IconButton>(section, Symbol::plus,
                                             translated(QT_TRANSLATE_NOOP("VocabularyPane", "Add an app")),
                                             kit::IconButtonRole::standard);
    section.addRow(translated(QT_TRANSLATE_NOOP("VocabularyPane", "Apply replacements to")), *scopes_)
        .addTrailing(*plus_);
    connect(scopes_, &QComboBox::activated, &pane_,
            [this](int index) { pane_.setScope(scopeAt(*scopes_, index)); });
    connect(plus_, &QAbstractButton::clicked, this, &VocabularyPaneView::offerApps);
    connect(icons_, &AppIcons::loaded, scopes_, [this](const QString& bundleID) {
        if (const int index = scopes_->findData(bundleID); index >= 0)
            scopes_->setItemIcon(index, icons_->icon(bundleID));
    });
}

void VocabularyPaneView::addRules()
{
    const QString header = translated(QT_TRANSLATE_NOOP("VocabularyPane", "Replacements"));
    section_ = &addSection(header);
    list_ = &kit::makeChild<kit::VirtualList>(section_->card(), static_cast<kit::ListContent&>(*this), *this);
    list_->setAccessibleName(header);
    section_->card().addRow(*list_);
    connect(list_, &kit::VirtualList::deleteRequested, this, &VocabularyPaneView::deleteRuleAt);
}

void VocabularyPaneView::addNewRule()
{
    auto& row = kit::makeChild<QWidget>(section_->card());
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
    section_->addWidget(row);
    list_->setFallbackFocus(*newFrom_);
    connect(newFrom_, &QLineEdit::textEdited, &pane_, &VocabularyPane::setNewFrom);
    connect(newTo_, &QLineEdit::textEdited, &pane_, &VocabularyPane::setNewTo);
    connect(add_, &QPushButton::clicked, this, &VocabularyPaneView::addRule);
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
        QAction* action = menu.addAction(icons_->icon(app.bundleID), asMenuText(app.name), &pane_,
                                         [this, app] { pane_.addApp(app); });
        connect(icons_, &AppIcons::loaded, action, [this, action, id = app.bundleID](const QString& loaded) {
            if (loaded == id)
                action->setIcon(icons_->icon(id));
        });
    }
    menu.addSeparator();
    menu.addAction(translated(QT_TRANSLATE_NOOP("VocabularyPane", "Browse…")), this,
                   [this] { browse_(*window(), [this](const AppInfo& app) { pane_.addApp(app); }); });
    menu.popup(plus_->mapToGlobal(QPoint(0, plus_->height())));
}

void VocabularyPaneView::addRule()
{
    pane_.add();
    // The button can't be used again before there are new texts.
    newFrom_->setFocus(Qt::OtherFocusReason);
}

void VocabularyPaneView::deleteRuleAt(std::size_t index)
{
    pane_.deleteRulesAt({index});
}

std::size_t VocabularyPaneView::count() const
{
    return pane_.rules().size();
}

QUuid VocabularyPaneView::idAt(std::size_t index) const
{
    return pane_.rules()[index].id;
}

int VocabularyPaneView::estimatedHeight(std::size_t, int) const
{
    return newFrom_->sizeHint().height() + 2 * kit::metrics::rowPadding;
}

std::unique_ptr<kit::ListRow> VocabularyPaneView::makeRow()
{
    auto made =
        std::make_unique<ReplacementRowView>([this](const VocabRule& rule, const QString& from,
                                                    const QString& to) { pane_.update(rule, from, to); });
    const ReplacementRowView* row = made.get();
    connect(row, &ReplacementRowView::deleteRequested, this, [this, row] { deleteRuleAt(row->index()); });
    return made;
}

void VocabularyPaneView::showItem(kit::ListRow& row, std::size_t index)
{
    static_cast<ReplacementRowView&>(row).setRule(pane_.rules()[index]);
}

void VocabularyPaneView::showState()
{
    showScopes();
    list_->reload();
    list_->setVisible(!pane_.rules().empty());
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
    if (scopes_->count() == 0 || apps_ != pane_.apps()) {
        apps_ = pane_.apps();
        scopes_->clear();
        scopes_->addItem(translated(QT_TRANSLATE_NOOP("VocabularyPane", "Global")));
        for (const AppVocab& app : apps_)
            scopes_->addItem(icons_->icon(app.bundleID), app.name, app.bundleID);
    }
    for (int index = 0; index < scopes_->count(); ++index) {
        if (scopeAt(*scopes_, index) == pane_.scope())
            scopes_->setCurrentIndex(index);
    }
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
    section_->card().insertRow(0, *emptyState_);
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

} // namespace corvandi
