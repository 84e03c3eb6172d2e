#include "views/kit/virtual_list.h"

#include "views/kit/style.h"

#include <QAccessible>
#include <QApplication>
#include <QHash>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>

#include <algorithm>
#include <utility>

namespace corvandi::kit {
namespace {

/// The line between two rows.
constexpr int gap = 1;
/// What a turn of the event loop may do, in units of showing an item in a row that exists, about a fifth of
/// a millisecond. A row costs thrice as much to make.
constexpr int workPerTurn = 20;
constexpr int makingRow = 3;
/// Rows that turn out higher or lower than was estimated move others into view; this is enough for any.
constexpr int mostPasses = 8;

bool contains(const std::vector<ListRow*>& rows, const ListRow* row)
{
    return std::find(rows.begin(), rows.end(), row) != rows.end();
}

} // namespace

VirtualList::VirtualList(ListContent& content, QScrollArea& area, QWidget* parent)
    : QWidget(parent)
    , content_(content)
    , area_(area)
{
    makeListsAccessible();
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    connect(area.verticalScrollBar(), &QScrollBar::valueChanged, this, &VirtualList::place);
    area.viewport()->installEventFilter(this);
    nextTurn_.setSingleShot(true);
    connect(&nextTurn_, &QTimer::timeout, this, &VirtualList::place);
}

VirtualList::~VirtualList() = default;

void VirtualList::reload()
{
    const std::optional<Focus> focused = focus();
    std::vector<ListRow*> gone = takeItems();
    for (ListRow* row : gone)
        row->leaveItem();
    const bool focusGoes = focused && contains(gone, focused->row);
    // The row with the focus is not used for another item before the focus has left it.
    std::erase_if(gone, [&](const ListRow* row) { return focusGoes && row == focused->row; });
    spare_.insert(spare_.end(), gone.begin(), gone.end());
    place();
    if (!focusGoes)
        return;
    if (!items_.empty())
        moveFocus(current_, focused->stop, Qt::OtherFocusReason);
    else if (fallback_)
        fallback_->setFocus(Qt::OtherFocusReason);
    spare_.push_back(focused->row);
    hideSpareRows();
}

std::vector<ListRow*> VirtualList::takeItems()
{
    const QUuid current = items_.empty() ? QUuid() : items_[current_].id;
    const std::vector<Item> old = std::exchange(items_, {});
    QHash<QUuid, std::size_t> places;
    for (std::size_t index = 0; index < old.size(); ++index)
        places.insert(old[index].id, index);
    std::vector<ListRow*> gone;
    for (const Item& item : old) {
        if (item.row)
            gone.push_back(item.row);
    }
    const std::size_t count = content_.count();
    current_ = std::min(current_, count > 0 ? count - 1 : 0);
    items_.resize(count);
    for (std::size_t index = 0; index < count; ++index) {
        Item& item = items_[index];
        item.id = content_.idAt(index);
        // Taken out, so that one of two items with the same identifier gets the row.
        if (const auto known = places.find(item.id); known != places.end()) {
            item = old[*known];
            places.erase(known);
        } else {
            item.height = content_.estimatedHeight(index, width());
        }
        if (item.id == current)
            current_ = index;
        if (item.row) {
            std::erase(gone, item.row);
            showItem(*item.row, index);
        }
    }
    setTops(0);
    return gone;
}

void VirtualList::place()
{
    if (isPlacing_ || !isVisible())
        return;
    const QScopedValueRollback guard(isPlacing_, true);
    workInTurn_ = 0;
    for (int pass = 0; pass < mostPasses && placeOnce(); ++pass) {
    }
    arrangeRows();
    hideSpareRows();
    if (std::exchange(shownHeight_, totalHeight()) != totalHeight())
        updateGeometry();
    update();
}

bool VirtualList::placeOnce()
{
    // What the user looks at stays where it is when rows above it get their height.
    const auto held = anchor();
    if (!held)
        return false;
    const int y = items_[*held].top - viewTop();
    releaseHiddenRows();
    makeVisibleRows();
    const int shift = items_[*held].top - viewTop() - y;
    scrollBy(shift);
    return shift != 0;
}

void VirtualList::releaseHiddenRows()
{
    const std::optional<Focus> focused = focus();
    const int top = viewTop();
    const int bottom = viewBottom();
    for (std::size_t index = 0; index < items_.size(); ++index) {
        Item& item = items_[index];
        const bool isSeen = item.top < bottom && item.top + item.height > top;
        if (!item.row || isSeen || (focused && (index == current_ || item.row == focused->row)))
            continue;
        item.row->leaveItem();
        spare_.push_back(std::exchange(item.row, nullptr));
    }
}

void VirtualList::makeVisibleRows()
{
    const std::size_t first = itemAt(viewTop());
    std::size_t end = first;
    // While the focus is elsewhere, the Tab key leads to what can be seen. Its row is made in any case.
    for (const int bottom = viewBottom(); end < items_.size() && items_[end].top < bottom; ++end) {
        if (items_[end].row || mayTakeRow())
            makeRowAt(end);
        else
            nextTurn_.start();
    }
    if (!focus() && end > first)
        setCurrent(std::clamp(current_, first, end - 1));
    makeRowAt(current_);
}

void VirtualList::showItem(ListRow& row, std::size_t index)
{
    row.setPlace(index, items_.size());
    content_.showItem(row, index);
    QAccessibleEvent renamed(&row, QAccessible::NameChanged);
    QAccessible::updateAccessibility(&renamed);
}

bool VirtualList::mayTakeRow() const
{
    return workInTurn_ < workPerTurn;
}

void VirtualList::makeRowAt(std::size_t index)
{
    Item& item = items_[index];
    if (!item.row) {
        item.row = &takeRow();
        item.row->setTabStop(index == current_);
        showItem(*item.row, index);
    }
    if (item.isMeasured)
        return;
    item.isMeasured = true;
    if (std::exchange(item.height, item.row->heightForWidth(width())) != item.height)
        setTops(index + 1);
}

ListRow& VirtualList::takeRow()
{
    ++workInTurn_;
    if (spare_.empty()) {
        workInTurn_ += makingRow;
        spare_.push_back(content_.makeRow().release());
        adopt(*spare_.back());
    }
    ListRow& row = *spare_.back();
    spare_.pop_back();
    return row;
}

void VirtualList::adopt(ListRow& row)
{
    row.setParent(this);
    row.installEventFilter(this);
    for (QWidget* widget : row.findChildren<QWidget*>())
        widget->installEventFilter(this);
    // Not after all that was made before it. Widgets that never get the focus are not put in order.
    setFocusPolicy(Qt::ClickFocus);
    QWidget* before = this;
    for (QWidget* stop : row.stops())
        setTabOrder(std::exchange(before, stop), stop);
    setFocusPolicy(Qt::NoFocus);
    if (const int narrowest = row.minimumSizeHint().width(); narrowest > narrowestRow_) {
        narrowestRow_ = narrowest;
        updateGeometry();
    }
}

void VirtualList::hideSpareRows()
{
    for (ListRow* row : spare_)
        row->hide();
}

void VirtualList::arrangeRows()
{
    for (const Item& item : items_) {
        if (!item.row)
            continue;
        item.row->setGeometry(0, item.top, width(), item.height);
        item.row->show();
    }
}

void VirtualList::setTops(std::size_t from)
{
    for (std::size_t index = from; index < items_.size(); ++index)
        items_[index].top = index == 0 ? 0 : items_[index - 1].top + items_[index - 1].height + gap;
}

void VirtualList::estimate()
{
    for (std::size_t index = 0; index < items_.size(); ++index) {
        items_[index].height = content_.estimatedHeight(index, width());
        items_[index].isMeasured = false;
    }
    setTops(0);
}

void VirtualList::scrollBy(int distance)
{
    if (distance == 0)
        return;
    QScrollBar& bar = *area_.verticalScrollBar();
    const int value = bar.value() + distance;
    // The area learns of new heights later.
    if (value > bar.maximum())
        bar.setMaximum(value);
    bar.setValue(value);
}

std::size_t VirtualList::itemAt(int y) const
{
    const auto next = std::upper_bound(items_.begin(), items_.end(), y,
                                       [](int wanted, const Item& item) { return wanted < item.top; });
    return next == items_.begin() ? 0 : static_cast<std::size_t>(next - items_.begin()) - 1;
}

std::optional<std::size_t> VirtualList::anchor() const
{
    if (items_.empty())
        return std::nullopt;
    const std::size_t first = itemAt(viewTop());
    const int bottom = viewBottom();
    for (std::size_t index = first; index < items_.size() && items_[index].top < bottom; ++index) {
        if (items_[index].row && items_[index].isMeasured)
            return index;
    }
    return first;
}

int VirtualList::viewTop() const
{
    return mapFrom(area_.viewport(), QPoint()).y();
}

int VirtualList::viewBottom() const
{
    return viewTop() + area_.viewport()->height();
}

int VirtualList::totalHeight() const
{
    return items_.empty() ? 0 : items_.back().top + items_.back().height;
}

std::vector<ListRow*> VirtualList::rows() const
{
    std::vector<ListRow*> rows;
    for (const Item& item : items_) {
        if (item.row)
            rows.push_back(item.row);
    }
    return rows;
}

QSize VirtualList::sizeHint() const
{
    return {narrowestRow_, totalHeight()};
}

QSize VirtualList::minimumSizeHint() const
{
    return sizeHint();
}

void VirtualList::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QColor hairline = Colors::of(*this).hairline;
    for (const Item& item : items_) {
        if (item.row && item.top > 0)
            painter.fillRect(metrics::rowMargin, item.top - gap, width() - 2 * metrics::rowMargin, gap,
                             hairline);
    }
}

void VirtualList::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (event->size().width() == event->oldSize().width())
        return place();
    const auto held = isVisible() ? anchor() : std::nullopt;
    const int y = held ? items_[*held].top - viewTop() : 0;
    estimate();
    if (held && y < 0)
        scrollBy(items_[*held].top - viewTop() - y);
    place();
}

void VirtualList::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    place();
}

} // namespace corvandi::kit
