#pragma once

#include "shell/panes/permission_rows.h"
#include "views/kit/button.h"

#include <QWidget>

namespace corvandi {

/// The content of the welcome window.
///
/// The welcome belongs to it; what that refers to outlives it.
class WelcomeView : public QWidget {
    Q_OBJECT

public:
    explicit WelcomeView(std::unique_ptr<Welcome> welcome, QWidget* parent = nullptr);
    ~WelcomeView() override;

protected:
    void hideEvent(QHideEvent* event) override;

private:
    std::unique_ptr<Welcome> welcome_;
};

} // namespace corvandi
