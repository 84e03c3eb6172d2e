#pragma once

#include <QLabel>

namespace corvandi::kit {

/// What a text is for; decides its size, weight and colour.
enum class TextStyle {
    body,
    /// The first line of a row that has two.
    rowTitle,
    /// Small and pale: under a control, under a section.
    caption,
    /// Above a section.
    header,
    /// Above a pane.
    title,
    /// Above a window's content.
    largeTitle,
    /// Explains, in the size of the body.
    secondary,
    /// Like a caption, in the colour of things that are granted.
    positive,
    /// Like a caption, in the colour of failures.
    failure,
};

/// A text in one of the styles. It wraps where it does not fit, shows its characters as they are (an
/// ampersand is an ampersand), and follows the palette and the font.
class TextLabel : public QLabel {
    Q_OBJECT

public:
    TextLabel(const QString& text, TextStyle style, QWidget* parent = nullptr);

    void setTextStyle(TextStyle style);
    /// Sets the text; an empty one hides the label.
    void setOptionalText(const QString& text);

protected:
    void changeEvent(QEvent* event) override;

private:
    void applyStyle();

    TextStyle style_;
    bool isApplying_ = false;
};

} // namespace corvandi::kit
