#include "engines/speech_engines.h"

#include "engines/pocketsphinx/model_files.h"
#include "engines/pocketsphinx/pocketsphinx_framework.h"

namespace corvandi {

std::unique_ptr<SpeechFramework> makeSpeechFramework(MainQueue& queue)
{
    return std::make_unique<PocketSphinxFramework>(installedModelFolder(), queue);
}

} // namespace corvandi
