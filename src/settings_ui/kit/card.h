#pragma once

#include <QVBoxLayout>
#include <QWidget>

namespace corvandi::kit {

/// A rounded panel that holds rows, with a hairline between each two that are visible. Rows belong to the
/// card; a row that is deleted leaves it.
class Card : public QWidget {
    Q_OBJECT

public:
    explicit Card(QWidget* parent = nullptr);

    /// Adds a row at the bottom. Rows bring their own margins.
    void addRow(QWidget& row) { insertRow(rowCount(), row); }
    void insertRow(int index, QWidget& row);
    [[nodiscard]] int rowCount() const { return layout_.count(); }
    [[nodiscard]] QWidget* row(int index) const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QVBoxLayout& layout_;
};

} // namespace corvandi::kit
