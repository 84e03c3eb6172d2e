#pragma once

#include "base/main_queue.h"
#include "ports/file_system.h"
#include "ports/speech_framework.h"
#include "ports/system_log.h"

#include <QString>

#include <memory>

namespace corvandi {

/// The speech engine that this program dictates with: the built-in one, as there is no other yet.
///
/// `queue` and `log` outlive it. What it learns of voice and microphone is kept in a file of `cacheFolder`.
/// Thread: main thread only; takes no time, an engine brings its model into memory
/// when it is asked to.
[[nodiscard]] std::unique_ptr<SpeechFramework> makeSpeechFramework(MainQueue& queue, SystemLog& log,
                                                                   std::shared_ptr<FileSystem> files,
                                                                   const QString& cacheFolder);

} // namespace corvandi
