#pragma once

#include "symbols/symbol.h"

#include <QLineEdit>

#include <optional>

namespace corvandi::kit {

/// A line edit in the look of the other controls, with a symbol before the text if one is given (such as
/// the magnifying glass of a search field). Give it an accessible name, or a placeholder, which is its
/// name else.
class TextField : public QLineEdit {
    Q_OBJECT

public:
    explicit TextField(std::optional<Symbol> symbol = {}, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    /// No narrower than the placeholder.
    [[nodiscard]] QSize minimumSizeHint() const override;
    void setPlaceholder(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::optional<Symbol> symbol_;
};

} // namespace corvandi::kit
