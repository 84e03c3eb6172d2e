// The part of the list that has to do with the keyboard and with screen readers.
#include "views/kit/selectable_text.h"
#include "views/kit/style.h"
#include "views/kit/virtual_list.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>

#include <algorithm>
#include <memory>

namespace corvandi::kit {
namespace {

/// The rows in their order, without those that are kept for later.
class AccessibleList : public QAccessibleWidget {
public:
    explicit AccessibleList(VirtualList& list)
        : QAccessibleWidget(&list, QAccessible::List)
        , list_(list)
    {
    }
    [[nodiscard]] int childCount() const override { return static_cast<int>(list_.rows().size()); }
    [[nodiscard]] QAccessibleInterface* child(int index) const override
    {
        const auto rows = list_.rows();
        const bool exists = index >= 0 && static_cast<std::size_t>(index) < rows.size();
        return exists ? QAccessible::queryAccessibleInterface(rows[static_cast<std::size_t>(index)])
                      : nullptr;
    }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override
    {
        const auto rows = list_.rows();
        const auto found = std::find(rows.begin(), rows.end(), child ? child->object() : nullptr);
        return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
    }

private:
    VirtualList& list_;
};

class AccessibleRow : public QAccessibleWidget {
public:
    explicit AccessibleRow(ListRow& row)
        : QAccessibleWidget(&row, QAccessible::ListItem)
        , row_(row)
    {
    }
    [[nodiscard]] QString text(QAccessible::Text text) const override
    {
        if (text == QAccessible::Name)
            return row_.spokenText();
        return text == QAccessible::Description ? row_.spokenPosition() : QAccessibleWidget::text(text);
    }

private:
    ListRow& row_;
};

class AccessibleText : public QAccessibleWidget {
public:
    explicit AccessibleText(SelectableText& text)
        : QAccessibleWidget(&text, QAccessible::StaticText)
        , text_(text)
    {
    }
    [[nodiscard]] QString text(QAccessible::Text text) const override
    {
        return text == QAccessible::Name ? text_.text() : QAccessibleWidget::text(text);
    }

private:
    SelectableText& text_;
};

/// Qt owns what it returns.
QAccessibleInterface* interfaceOf(const QString&, QObject* object)
{
    if (auto* list = qobject_cast<VirtualList*>(object))
        return std::make_unique<AccessibleList>(*list).release();
    if (auto* row = qobject_cast<ListRow*>(object))
        return std::make_unique<AccessibleRow>(*row).release();
    if (auto* text = qobject_cast<SelectableText*>(object))
        return std::make_unique<AccessibleText>(*text).release();
    return nullptr;
}

} // namespace

void VirtualList::makeListsAccessible()
{
    QAccessible::installFactory(interfaceOf);
}

namespace {

/// Of a row that is higher than the area, as much stays in view when it is scrolled by key.
constexpr int overlap = 60;

/// Keys that a text field needs for itself.
bool isForText(const QWidget& stop, int key)
{
    if (qobject_cast<const QLineEdit*>(&stop))
        return key == Qt::Key_Home || key == Qt::Key_End || key == Qt::Key_Delete;
    const auto* text = qobject_cast<const SelectableText*>(&stop);
    return text && key == Qt::Key_Delete && !text->selectedText().isEmpty();
}

bool followsKeyboard(Qt::FocusReason reason)
{
    return reason != Qt::MouseFocusReason && reason != Qt::ActiveWindowFocusReason &&
           reason != Qt::PopupFocusReason;
}

} // namespace

bool VirtualList::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == area_.viewport()) {
        if (event->type() == QEvent::Resize)
            place();
        return false;
    }
    const auto& stop = static_cast<const QWidget&>(*watched);
    if (event->type() == QEvent::FocusIn)
        focusEntered(stop, static_cast<const QFocusEvent*>(event)->reason());
    if (event->type() != QEvent::KeyPress || watched != QApplication::focusWidget())
        return false;
    const auto& press = *static_cast<const QKeyEvent*>(event);
    const std::optional<Focus> focused = focus();
    if (!focused || (press.modifiers() & ~Qt::KeypadModifier) || isForText(stop, press.key()))
        return false;
    // A key that is held too long must not empty the list.
    if (press.key() == Qt::Key_Delete && press.isAutoRepeat())
        return true;
    return handleKey(*focused, press.key());
}

bool VirtualList::handleKey(const Focus& focus, int key)
{
    switch (key) {
    case Qt::Key_Up:
        return step(focus, -1);
    case Qt::Key_Down:
        return step(focus, 1);
    case Qt::Key_PageUp:
        moveFocus(pageAway(-1), focus.stop, Qt::TabFocusReason);
        return true;
    case Qt::Key_PageDown:
        moveFocus(pageAway(1), focus.stop, Qt::TabFocusReason);
        return true;
    case Qt::Key_Home:
        moveFocus(0, focus.stop, Qt::TabFocusReason);
        return true;
    case Qt::Key_End:
        moveFocus(items_.size() - 1, focus.stop, Qt::TabFocusReason);
        return true;
    case Qt::Key_Delete:
        Q_EMIT deleteRequested(focus.row->index());
        return true;
    default:
        return false;
    }
}

bool VirtualList::step(const Focus& focus, int direction)
{
    const std::size_t index = focus.row->index();
    const Item& item = items_[index];
    const int page = area_.viewport()->height() - overlap;
    const int hidden = direction > 0 ? item.top + item.height - viewBottom() : viewTop() - item.top;
    if (item.height > area_.viewport()->height() && hidden > 0) {
        scrollBy(direction * std::min(hidden, page));
        return true;
    }
    if (direction < 0 ? index > 0 : index + 1 < items_.size())
        moveFocus(direction < 0 ? index - 1 : index + 1, focus.stop, Qt::TabFocusReason);
    return true;
}

std::size_t VirtualList::pageAway(int direction) const
{
    const std::size_t away = itemAt(items_[current_].top + direction * area_.viewport()->height());
    if (direction < 0)
        return std::min(away, current_ > 0 ? current_ - 1 : 0);
    return std::max(away, std::min(current_ + 1, items_.size() - 1));
}

void VirtualList::moveFocus(std::size_t index, std::size_t stop, Qt::FocusReason reason)
{
    setCurrent(index);
    reveal(items_[index]);
    place();
    if (reason == Qt::TabFocusReason)
        window()->setAttribute(Qt::WA_KeyboardFocusChange);
    if (const ListRow* row = items_[index].row)
        row->stops()[std::min(stop, row->stops().size() - 1)]->setFocus(reason);
}

void VirtualList::focusEntered(const QWidget& stop, Qt::FocusReason reason)
{
    for (std::size_t index = 0; index < items_.size(); ++index) {
        const ListRow* row = items_[index].row;
        if (!row || (row != &stop && !row->isAncestorOf(&stop)))
            continue;
        setCurrent(index);
        if (followsKeyboard(reason))
            reveal(items_[index]);
        return;
    }
}

void VirtualList::setCurrent(std::size_t index)
{
    if (current_ < items_.size() && items_[current_].row)
        items_[current_].row->setTabStop(false);
    current_ = index;
    if (items_[current_].row)
        items_[current_].row->setTabStop(true);
}

void VirtualList::reveal(const Item& item)
{
    const int above = item.top - metrics::rowPadding - viewTop();
    const int below = item.top + item.height + metrics::rowPadding - viewBottom();
    const bool isHigher = item.height > area_.viewport()->height();
    if (isHigher && above < 0 && below > 0)
        return;
    if (above < 0 || isHigher)
        scrollBy(above);
    else if (below > 0)
        scrollBy(below);
}

std::optional<VirtualList::Focus> VirtualList::focus() const
{
    const QWidget* widget = QApplication::focusWidget();
    if (!widget || !isAncestorOf(widget))
        return std::nullopt;
    for (auto* row : findChildren<ListRow*>(Qt::FindDirectChildrenOnly)) {
        const auto& stops = row->stops();
        const auto stop = std::find(stops.begin(), stops.end(), widget);
        if (stop != stops.end())
            return Focus{row, static_cast<std::size_t>(stop - stops.begin())};
        if (row->isAncestorOf(widget))
            return Focus{row, 0};
    }
    return std::nullopt;
}

} // namespace corvandi::kit
