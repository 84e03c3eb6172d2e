#include "engines/speech_engines.h"

#include "engines/pocketsphinx/model_files.h"
#include "engines/pocketsphinx/pocketsphinx_framework.h"
#include "engines/shared/adaptation_file.h"

#include <utility>

namespace corvandi {

std::unique_ptr<SpeechFramework> makeSpeechFramework(MainQueue& queue, SystemLog& log,
                                                     std::shared_ptr<FileSystem> files,
                                                     const QString& cacheFolder)
{
    auto adaptation = std::make_shared<AdaptationFile>(std::move(files), log, cacheFolder);
    return std::make_unique<PocketSphinxFramework>(installedModelFolder(), queue, log, std::move(adaptation));
}

} // namespace corvandi
