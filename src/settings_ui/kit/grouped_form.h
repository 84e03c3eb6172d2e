#pragma once

#include "settings_ui/kit/form_section.h"

#include <QScrollArea>

namespace corvandi::kit {

/// A column of sections that scrolls when it is higher than its place; whatever gets the focus is
/// scrolled into view. In wide windows the column stays readable and moves to the middle.
class GroupedForm : public QScrollArea {
    Q_OBJECT

public:
    explicit GroupedForm(QWidget* parent = nullptr);

    FormSection& addSection(const QString& header = {});
    /// Any widget between the sections.
    void addWidget(QWidget& widget);
    /// The column, to be the parent of widgets that are added.
    [[nodiscard]] QWidget& column() const { return column_; }
    [[nodiscard]] QSize minimumSizeHint() const override;

private:
    QWidget& column_;
    QVBoxLayout& layout_;
};

} // namespace corvandi::kit
