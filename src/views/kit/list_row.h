#pragma once

#include <QWidget>

#include <cstddef>
#include <vector>

namespace corvandi::kit {

/// A row of a `VirtualList`. It shows one item after another, and can have the focus itself, beside its
/// controls.
class ListRow : public QWidget {
    Q_OBJECT

public:
    explicit ListRow(QWidget* parent = nullptr);

    /// What a screen reader says for the whole row.
    [[nodiscard]] virtual QString spokenText() const = 0;
    /// Where the row's item stands in the list, from one on; for screen readers.
    [[nodiscard]] virtual QString spokenPosition() const;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    /// Asked for once per item and width.
    [[nodiscard]] int heightForWidth(int width) const override = 0;
    /// The row's item has gone or is shown by another row from now on: nothing may come of what is still
    /// going on in this one.
    virtual void leaveItem() {}

    /// The row and its controls, in the order in which the Tab key reaches them.
    [[nodiscard]] const std::vector<QWidget*>& stops() const { return stops_; }
    /// Whether the Tab key reaches them: in a list, it does so in one row.
    void setTabStop(bool isTabStop);
    [[nodiscard]] std::size_t index() const { return index_; }
    /// The list's own to call: the item that is shown, of how many.
    void setPlace(std::size_t index, std::size_t count);

    [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

protected:
    /// To be called in this order by the constructors.
    void addControl(QWidget& control);
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<QWidget*> stops_;
    std::size_t index_ = 0;
    std::size_t count_ = 0;
};

} // namespace corvandi::kit
