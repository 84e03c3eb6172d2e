#pragma once

#include "base/main_queue.h"
#include "core/data/settings.h"
#include "ports/language_model.h"
#include "ports/login_item.h"
#include "ports/system_log.h"
#include "ports/system_settings.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace corvandi {

/// What the general page of the settings knows besides the settings themselves: whether rewriting can be
/// switched on, and whether the program starts at login. A snapshot: `refresh` takes it anew. Until the
/// first word from the language model arrives nothing speaks against rewriting. When rewriting is switched on
/// the model is warmed up.
///
/// Thread: main thread only. The referees outlive it.
class GeneralPane : public QObject {
    Q_OBJECT

public:
    struct Parts {
        Settings& settings;
        LanguageModel& languageModel;
        LoginItem& loginItem;
        SystemSettings& systemSettings;
        SystemLog& log;
    };

    explicit GeneralPane(const Parts& parts);

    [[nodiscard]] Settings& settings() const { return parts_.settings; }
    /// Why rewriting is not available; nothing when it is.
    [[nodiscard]] const std::optional<QString>& rewriteCaption() const { return rewriteCaption_; }
    /// What the model is called that rewrites; nothing when there is none.
    [[nodiscard]] const std::optional<QString>& rewriteModel() const { return rewriteModel_; }
    /// Whether all that is missing for rewriting is that the user switches the model on.
    [[nodiscard]] bool canEnableAppleIntelligence() const { return canEnableAppleIntelligence_; }
    [[nodiscard]] bool launchAtLogin() const { return launchAtLogin_; }
    /// Why the last change of it has failed.
    [[nodiscard]] const std::optional<QString>& launchAtLoginError() const { return launchAtLoginError_; }

    /// Call it when the page is shown and when the application becomes active again. What the language
    /// model says comes later, with another `changed`.
    void refresh();
    /// When the platform refuses, `launchAtLogin` stays as it was; `changed` follows all the same, so that
    /// a switch that shows more than that flips back.
    void setLaunchAtLogin(bool on);
    /// Opens the page of the desktop's settings where the model is switched on.
    void openAppleIntelligenceSettings();

Q_SIGNALS:
    void changed();

private:
    void takeAvailability();
    void warmUpModel();

    Parts parts_;
    std::optional<QString> rewriteCaption_;
    std::optional<QString> rewriteModel_;
    bool canEnableAppleIntelligence_ = false;
    bool launchAtLogin_ = false;
    std::optional<QString> launchAtLoginError_;
    std::unique_ptr<Registration> modelObservation_;
};

} // namespace corvandi
