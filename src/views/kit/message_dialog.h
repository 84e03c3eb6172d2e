#pragma once

#include "views/kit/button.h"

#include <QDialog>
#include <QHBoxLayout>

namespace corvandi::kit {

/// A sentence and what else there is to say, with the program's icon beside them and buttons below. Both
/// are shown as they are, never as markup; long details scroll. Escape and closing it reject.
class MessageDialog : public QDialog {
    Q_OBJECT

public:
    MessageDialog(const QString& text, const QString& details, QWidget* parent = nullptr);

    /// Adds a button at the trailing end; pressing it ends the dialog with `result`.
    Button& addButton(const QString& text, int result, ButtonRole role);
    /// Return presses this one, wherever the focus is but on another button. It has the focus at first.
    static void setDefaultButton(Button& button);

protected:
    void showEvent(QShowEvent* event) override;

private:
    [[nodiscard]] QWidget& makeDetails(const QString& details);

    QHBoxLayout* buttons_ = nullptr;
};

} // namespace corvandi::kit
