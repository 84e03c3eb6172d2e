#include "shell/panes/general_pane.h"

#include "base/error.h"
#include "core/text/rewriter.h"

namespace corvandi {

GeneralPane::GeneralPane(const Parts& parts)
    : parts_(parts)
{
    connect(&parts_.settings, &Settings::cleanUpSentencesChanged, this, &GeneralPane::warmUpModel);
}

void GeneralPane::refresh()
{
    launchAtLogin_ = parts_.loginItem.isEnabled();
    Q_EMIT changed();
    modelObservation_ = parts_.languageModel.refreshAvailability([this] { takeAvailability(); });
}

void GeneralPane::takeAvailability()
{
    const LanguageModelAvailability availability = parts_.languageModel.availability();
    rewriteCaption_ = Rewriter::caption(availability);
    rewriteModel_ = parts_.languageModel.modelName();
    canEnableAppleIntelligence_ = availability == LanguageModelAvailability::appleIntelligenceNotEnabled;
    Q_EMIT changed();
}

void GeneralPane::warmUpModel()
{
    if (parts_.settings.cleanUpSentences())
        parts_.languageModel.warmUp();
}

void GeneralPane::setLaunchAtLogin(bool on)
{
    try {
        if (on)
            parts_.loginItem.enable();
        else
            parts_.loginItem.disable();
        launchAtLogin_ = on;
        launchAtLoginError_.reset();
    } catch (const std::exception& error) {
        launchAtLoginError_ = describe(error);
        parts_.log.write(QStringLiteral("launch-at-login change failed: ") + *launchAtLoginError_);
    }
    Q_EMIT changed();
}

void GeneralPane::openAppleIntelligenceSettings()
{
    parts_.systemSettings.open(SystemSettingsPage::languageModel);
}

} // namespace corvandi
