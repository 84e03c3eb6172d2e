#pragma once

#include "settings_ui/kit/card.h"
#include "settings_ui/kit/form_row.h"

namespace corvandi::kit {

/// A card with a header above it and a footer below it; either may be absent.
class FormSection : public QWidget {
    Q_OBJECT

public:
    explicit FormSection(const QString& header = {}, QWidget* parent = nullptr);

    /// A row with a label and a control. The control becomes the row's.
    FormRow& addRow(const QString& label, QWidget& control);
    ToggleRow& addToggle(const QString& label);
    /// A row that is one widget, from margin to margin.
    void addWidget(QWidget& widget);
    /// An empty footer takes no room.
    void setFooter(const QString& text);

    [[nodiscard]] Card& card() const { return card_; }

private:
    TextLabel& header_;
    Card& card_;
    TextLabel& footer_;
};

} // namespace corvandi::kit
