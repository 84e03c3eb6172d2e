#pragma once

#include "updates/update_presenter.h"

#include <QDialog>
#include <QDialogButtonBox>

namespace corvandi {

/// A message with the program's icon and buttons below. Long details scroll.
class MessageDialog : public QDialog {
public:
    explicit MessageDialog(const UpdateMessage& message);

    [[nodiscard]] QDialogButtonBox& buttons() { return buttons_; }

private:
    [[nodiscard]] QWidget* makeDetails(const QString& details);

    QDialogButtonBox buttons_;
};

} // namespace corvandi
