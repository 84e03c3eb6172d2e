#pragma once

#include "settings_ui/kit/switch.h"
#include "settings_ui/kit/text_label.h"

#include <QHBoxLayout>
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

} // namespace corvandi::kit
