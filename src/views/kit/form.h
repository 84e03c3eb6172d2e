#pragma once

#include "views/kit/card.h"
#include "views/kit/controls.h"
#include "views/kit/text_label.h"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QVBoxLayout>
#include <QWidget>

namespace corvandi::kit {

/// A row of a form: a label, a control at its trailing end, and under them, if there is something to say,
/// a caption and more widgets.
class FormRow : public QWidget {
    Q_OBJECT

public:
    explicit FormRow(const QString& label, QWidget* parent = nullptr);

    /// Puts the control at the end. It bears the row's label as its accessible name unless it has one.
    void setControl(QWidget& control);
    /// Puts another control after that one.
    void addTrailing(QWidget& control);
    /// An empty caption takes no room.
    void setCaption(const QString& text, TextStyle style = TextStyle::caption);
    /// Puts a widget under the caption, at the leading edge.
    void addBelow(QWidget& widget);

    [[nodiscard]] TextLabel& label() const { return label_; }
    /// Nothing until there was a caption.
    [[nodiscard]] TextLabel* caption() const { return caption_; }

private:
    QVBoxLayout& column_;
    QHBoxLayout& line_;
    TextLabel& label_;
    TextLabel* caption_ = nullptr;
};

/// A row whose control is a switch. A click anywhere in its line turns it.
class ToggleRow : public FormRow {
    Q_OBJECT

public:
    explicit ToggleRow(const QString& label, QWidget* parent = nullptr);

    [[nodiscard]] Switch& toggle() const { return toggle_; }

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    Switch& toggle_;
};

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

/// A column of sections that scrolls when it is higher than its place; whatever gets the focus is
/// scrolled into view. In wide windows the column stays readable and moves to the middle.
class GroupedForm : public QScrollArea {
    Q_OBJECT

public:
    explicit GroupedForm(QWidget* parent = nullptr);

    FormSection& addSection(const QString& header = {});
    [[nodiscard]] QSize minimumSizeHint() const override;

private:
    QWidget& column_;
    QVBoxLayout& layout_;
};

} // namespace corvandi::kit
