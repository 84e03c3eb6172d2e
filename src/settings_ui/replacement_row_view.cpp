#include "settings_ui/replacement_row_view.h"

#include "settings_ui/kit/child.h"
#include "settings_ui/kit/icon_button.h"
#include "settings_ui/kit/metrics.h"
#include "settings_ui/kit/symbol_view.h"

#include <QApplication>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QPointer>

namespace corvandi {
namespace {

constexpr QMargins margins(kit::metrics::rowMargin, kit::metrics::rowPadding, kit::metrics::rowPadding,
                           kit::metrics::rowPadding);
constexpr int spacing = 8;
constexpr int arrowSize = 14;

} // namespace

ReplacementRowView::ReplacementRowView(const VocabRule& rule, const ReplacementRow::Commit& onCommit,
                                       const std::function<void()>& onDelete, QWidget* parent)
    : QWidget(parent)
    , row_(rule, onCommit, onDelete)
    , from_(kit::makeChild<kit::TextField>(*this, std::nullopt))
    , to_(kit::makeChild<kit::TextField>(*this, std::nullopt))
{
    from_.setPlaceholder(QCoreApplication::translate("VocabularyPane", "Heard"));
    to_.setPlaceholder(QCoreApplication::translate("VocabularyPane", "Replace with"));
    auto& trash = kit::makeChild<kit::IconButton>(
        *this, Symbol::trash, QCoreApplication::translate("VocabularyPane", "Delete replacement"),
        kit::IconButtonRole::destructive);
    auto& line = kit::makeLayout<QHBoxLayout>(*this, margins, spacing);
    line.addWidget(&from_, 1);
    line.addWidget(
        &kit::makeChild<kit::SymbolView>(*this, Symbol::arrowRight, arrowSize, kit::SymbolTint::secondary));
    line.addWidget(&to_, 1);
    line.addWidget(&trash);
    showTexts();
    connect(&from_, &QLineEdit::textEdited, this, [this](const QString& text) { row_.setFrom(text); });
    connect(&to_, &QLineEdit::textEdited, this, [this](const QString& text) { row_.setTo(text); });
    connect(&from_, &QLineEdit::returnPressed, this, &ReplacementRowView::commit);
    connect(&to_, &QLineEdit::returnPressed, this, &ReplacementRowView::commit);
    connect(&trash, &QAbstractButton::clicked, this, [this] { row_.deleteRule(); });
    connect(qApp, &QApplication::focusChanged, this,
            [this](const QWidget*, const QWidget* now) { focusChanged(now); });
}

void ReplacementRowView::focusChanged(const QWidget* now)
{
    std::optional<ReplacementRow::Field> field;
    if (now == &from_)
        field = ReplacementRow::Field::from;
    else if (now == &to_)
        field = ReplacementRow::Field::to;
    // What it stores may take the row away.
    const QPointer<ReplacementRowView> self(this);
    row_.setFocused(field);
    if (self && !field)
        showTexts();
}

void ReplacementRowView::commit()
{
    const QPointer<ReplacementRowView> self(this);
    row_.commit();
    if (self)
        showTexts();
}

void ReplacementRowView::showTexts()
{
    // Setting a text moves the cursor, even if it is the same.
    if (from_.text() != row_.from())
        from_.setText(row_.from());
    if (to_.text() != row_.to())
        to_.setText(row_.to());
}

} // namespace corvandi
