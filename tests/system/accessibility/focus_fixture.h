#pragma once

#include "core/insertion/focus_inspector.h"
#include "session/x11/windows/window_reader.h"
#include "support/recording_log.h"
#include "system/accessibility/at_spi_focus.h"
#include "system/accessibility/focus_cache.h"
#include "system/accessibility/target_application.h"
#include "system/process/qt_main_queue.h"

#include <gmock/gmock.h>

#include <QThread>

#include <memory>

namespace corvandi {
class FocusWorker;
}

namespace corvandi::testing {

/// The accessibility client as the classification sees it, with the focus of the real desktop.
class DesktopFocus : public FocusedElementReader {
public:
    explicit DesktopFocus(SystemLog& log);

    [[nodiscard]] std::optional<FocusedElement> focusedElement() override { return focus_.focusedElement(); }
    [[nodiscard]] std::optional<pid_t> activeProcess() const;
    /// Waits for one refresh.
    [[nodiscard]] bool isRefreshed();
    [[nodiscard]] AtSpiFocus& monitor() { return focus_; }

private:
    QtMainQueue queue_;
    XcbConnection x_;
    FrontWindowReader activeWindow_{x_};
    AtSpiFocus focus_;
};

/// The notes of a worker whom nobody ever asks for the focus, so that no question can have helped to find
/// the answer.
class UnaskedFocus {
public:
    explicit UnaskedFocus(SystemLog& log);
    ~UnaskedFocus();

    UnaskedFocus(const UnaskedFocus&) = delete;
    UnaskedFocus& operator=(const UnaskedFocus&) = delete;

    [[nodiscard]] bool knows(const TargetApplication& application) const;
    /// Waits, with patience for a busy machine, until they say so about that application.
    [[nodiscard]] bool becomes(const TargetApplication& application, FocusTarget target) const;

private:
    FocusCache cache_;
    QThread thread_;
    /// Lives on the thread, which destroys it when it ends.
    FocusWorker* worker_;
};

/// A field and what is to be found out about it.
struct ExpectedField {
    const char* name;
    FocusTarget target;
    const char* role;
    const char* subrole = nullptr;
};

class FocusTest : public ::testing::Test {
protected:
    /// Starts a window with one field of each kind and waits until its first one, "line", has the focus.
    std::unique_ptr<TargetApplication> startQtFields(const QString& title,
                                                     std::chrono::milliseconds busyTime = {});
    std::unique_ptr<TargetApplication> startGtkFields(const QString& version, const QString& title);

    /// Reads again and again until the focused element is such a one.
    [[nodiscard]] bool becomes(FocusTarget target);
    [[nodiscard]] bool isActive(const TargetApplication& application);
    /// Reads again and again until everything about the focused element is as expected.
    void expectRecognised(const ExpectedField& field);

    RecordingLog log;
    DesktopFocus desktop{log};
    FocusInspector inspector{desktop};

private:
    std::unique_ptr<TargetApplication> shown(std::unique_ptr<TargetApplication> application);
};

} // namespace corvandi::testing
