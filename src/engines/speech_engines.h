#pragma once

#include "base/main_queue.h"
#include "ports/speech_framework.h"

#include <memory>

namespace corvandi {

/// The speech engine that this program dictates with: the built-in one, as there is no other yet.
///
/// `queue` outlives it. Thread: main thread only; takes no time, an engine brings its model into memory
/// when it is asked to.
[[nodiscard]] std::unique_ptr<SpeechFramework> makeSpeechFramework(MainQueue& queue);

} // namespace corvandi
