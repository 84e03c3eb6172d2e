#pragma once

#include "views/kit/list_row.h"

#include <QPointer>
#include <QScrollArea>
#include <QTimer>
#include <QUuid>

#include <memory>
#include <optional>
#include <vector>

namespace corvandi::kit {

/// What a `VirtualList` shows.
class ListContent {
public:
    virtual ~ListContent() = default;

    [[nodiscard]] virtual std::size_t count() const = 0;
    /// Tells the same item from others when the list has changed.
    [[nodiscard]] virtual QUuid idAt(std::size_t index) const = 0;
    /// About how high a row of this width will be. Called for every item: takes no time.
    [[nodiscard]] virtual int estimatedHeight(std::size_t index, int width) const = 0;
    [[nodiscard]] virtual std::unique_ptr<ListRow> makeRow() = 0;
    /// Makes the row show the item. It may show it already.
    virtual void showItem(ListRow& row, std::size_t index) = 0;
};

/// A column of rows inside of a scroll area, of which only those that can be seen exist: as they are
/// scrolled out of view, they are used for others. The time that anything takes does not depend on how
/// many items there are. A large window is filled over a few turns of the event loop.
///
/// The Tab key reaches one row and its controls, then leaves the list; the arrow keys, Page Up and Page
/// Down move to other rows, from a control to the same one, and so do Home and End outside of text fields.
/// A row that is higher than the area is scrolled through before the next one's turn. The row with the
/// focus is kept, out of view too; when its item goes, the focus goes to the next one.
///
/// Screen readers find a list of the rows that exist; each of them tells its place among all.
///
/// Thread: main thread only. The referees outlive it.
class VirtualList : public QWidget {
    Q_OBJECT

public:
    VirtualList(ListContent& content, QScrollArea& area, QWidget* parent = nullptr);
    ~VirtualList() override;

    /// Call it whenever the content has changed. What is unchanged keeps its row.
    void reload();
    /// Gets the focus when it was in the list and the last item has gone.
    void setFallbackFocus(QWidget& widget) { fallback_ = &widget; }
    /// The rows that exist, from the top.
    [[nodiscard]] std::vector<ListRow*> rows() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;
    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    /// The Delete key was pressed in its row, and not for the sake of a text there.
    void deleteRequested(std::size_t index);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    struct Item {
        QUuid id;
        int top = 0;
        int height = 0;
        bool isMeasured = false;
        ListRow* row = nullptr;
    };
    /// Which of a row's stops has the focus.
    struct Focus {
        ListRow* row = nullptr;
        std::size_t stop = 0;
    };

    /// Tells Qt how screen readers are to see lists, their rows, and `SelectableText`.
    static void makeListsAccessible();
    void place();
    /// Whether another pass is needed.
    [[nodiscard]] bool placeOnce();
    void makeVisibleRows();
    [[nodiscard]] bool mayTakeRow() const;
    void makeRowAt(std::size_t index);
    void showItem(ListRow& row, std::size_t index);
    void releaseHiddenRows();
    void hideSpareRows();
    void arrangeRows();
    [[nodiscard]] ListRow& takeRow();
    void adopt(ListRow& row);
    /// Takes over the content's items as they are now; returns the rows of those that have gone.
    [[nodiscard]] std::vector<ListRow*> takeItems();
    void setTops(std::size_t from);
    void estimate();
    void scrollBy(int distance);

    [[nodiscard]] std::size_t itemAt(int y) const;
    [[nodiscard]] std::optional<std::size_t> anchor() const;
    [[nodiscard]] int viewTop() const;
    [[nodiscard]] int viewBottom() const;
    [[nodiscard]] int totalHeight() const;

    [[nodiscard]] std::optional<Focus> focus() const;
    void setCurrent(std::size_t index);
    void moveFocus(std::size_t index, std::size_t stop, Qt::FocusReason reason);
    void reveal(const Item& item);
    [[nodiscard]] bool handleKey(const Focus& focus, int key);
    [[nodiscard]] bool step(const Focus& focus, int direction);
    [[nodiscard]] std::size_t pageAway(int direction) const;
    void focusEntered(const QWidget& stop, Qt::FocusReason reason);

    ListContent& content_;
    QScrollArea& area_;
    QPointer<QWidget> fallback_;
    std::vector<Item> items_;
    std::vector<ListRow*> spare_;
    /// The item whose row the Tab key reaches.
    std::size_t current_ = 0;
    /// What the layouts were told.
    int shownHeight_ = 0;
    int narrowestRow_ = 0;
    bool isPlacing_ = false;
    /// Done in this turn of the event loop; the next one goes on.
    int workInTurn_ = 0;
    QTimer nextTurn_;
};

} // namespace corvandi::kit
