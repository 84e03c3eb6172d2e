#include "views/settings/replacement_row_view.h"

#include "views/kit/card.h"
#include "views/kit/child.h"
#include "views/kit/style.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHBoxLayout>
#include <QMenu>

#include <utility>

namespace corvandi {
namespace {

constexpr QMargins margins(kit::metrics::rowMargin, kit::metrics::rowPadding, kit::metrics::rowPadding,
                           kit::metrics::rowPadding);
constexpr int spacing = 8;
constexpr int arrowSize = 14;

QString translated(const char* text)
{
    return QCoreApplication::translate("VocabularyPane", text);
}

/// A control's name that is not that of every other row's.
QString spokenName(const QString& control, const QString& row)
{
    return QStringLiteral("%1, %2").arg(control, row);
}

} // namespace

ReplacementRowView::ReplacementRowView(Commit commit, QWidget* parent)
    : ListRow(parent)
    , commit_(std::move(commit))
    , from_(kit::makeChild<kit::TextField>(*this, std::nullopt))
    , to_(kit::makeChild<kit::TextField>(*this, std::nullopt))
    , trash_(kit::makeChild<kit::IconButton>(
          *this, Symbol::trash, translated(QT_TRANSLATE_NOOP("VocabularyPane", "Delete replacement")),
          kit::IconButtonRole::destructive))
{
    from_.setPlaceholder(translated(QT_TRANSLATE_NOOP("VocabularyPane", "Heard")));
    to_.setPlaceholder(translated(QT_TRANSLATE_NOOP("VocabularyPane", "Replace with")));
    auto& line = kit::makeLayout<QHBoxLayout>(*this, margins, spacing);
    line.addWidget(&from_, 1);
    line.addWidget(
        &kit::makeChild<kit::SymbolView>(*this, Symbol::arrowRight, arrowSize, kit::SymbolTint::secondary));
    line.addWidget(&to_, 1);
    line.addWidget(&trash_);
    for (kit::TextField* field : {&from_, &to_}) {
        addControl(*field);
        field->installEventFilter(this);
        connect(field, &QLineEdit::returnPressed, this, &ReplacementRowView::commit);
    }
    addControl(trash_);
    connect(&from_, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (row_)
            row_->setFrom(text);
    });
    connect(&to_, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (row_)
            row_->setTo(text);
    });
    connect(&trash_, &QAbstractButton::clicked, this, &ReplacementRowView::deleteRequested);
}

void ReplacementRowView::setRule(const VocabRule& rule)
{
    if (row_ && row_->rule().id == rule.id && focusedField())
        row_->setRule(rule);
    else
        row_.emplace(
            rule, [this, rule](const QString& from, const QString& to) { commit_(rule, from, to); },
            [this] { Q_EMIT deleteRequested(); });
    showTexts();
    // Rules may be equal in their texts.
    from_.setAccessibleName(spokenName(from_.placeholderText(), spokenPosition()));
    to_.setAccessibleName(spokenName(to_.placeholderText(), spokenPosition()));
    trash_.setAccessibleName(spokenName(trash_.toolTip(), spokenText()));
}

QString ReplacementRowView::spokenText() const
{
    return row_ ? QStringLiteral("%1 \u2192 %2").arg(row_->rule().from, row_->rule().to) : QString();
}

int ReplacementRowView::heightForWidth(int) const
{
    return sizeHint().height();
}

bool ReplacementRowView::eventFilter(QObject* watched, QEvent* event)
{
    // By now the application knows which widget has the focus next.
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        focusChanged();
    return ListRow::eventFilter(watched, event);
}

std::optional<ReplacementRow::Field> ReplacementRowView::focusedField() const
{
    const QWidget* focused = QApplication::focusWidget();
    if (focused == &from_)
        return ReplacementRow::Field::from;
    if (focused == &to_)
        return ReplacementRow::Field::to;
    return std::nullopt;
}

void ReplacementRowView::focusChanged()
{
    if (!row_)
        return;
    const auto field = focusedField();
    // What it stores may give the row another rule, or none.
    row_->setFocused(field);
    if (row_ && !field)
        showTexts();
}

void ReplacementRowView::commit()
{
    if (row_)
        row_->commit();
    if (row_)
        showTexts();
}

void ReplacementRowView::showTexts()
{
    // Setting a text moves the cursor, even if it is the same.
    if (from_.text() != row_->from())
        from_.setText(row_->from());
    if (to_.text() != row_->to())
        to_.setText(row_->to());
    // Of a text that is too long, the beginning is seen.
    for (kit::TextField* field : {&from_, &to_}) {
        if (!field->hasFocus())
            field->setCursorPosition(0);
    }
}

void ReplacementRowView::contextMenuEvent(QContextMenuEvent* event)
{
    auto& menu = kit::makeChild<QMenu>(*this);
    menu.setAttribute(Qt::WA_DeleteOnClose);
    menu.addAction(trash_.toolTip(), this, &ReplacementRowView::deleteRequested);
    menu.popup(event->globalPos());
}

} // namespace corvandi
