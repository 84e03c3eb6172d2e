#include "speech/pending_audio.h"

#include "speech/frame_count.h"

namespace corvandi {

PendingAudio::Buffers PendingAudio::append(Buffers node)
{
    frames_ = addFrames(frames_, node.front().frameLength());
    buffers_.splice(buffers_.end(), node);
    Buffers dropped;
    while (frames_ > maxFrames && buffers_.size() >= 2) {
        frames_ -= buffers_.front().frameLength();
        dropped.splice(dropped.end(), buffers_, buffers_.begin());
    }
    return dropped;
}

PendingAudio::Buffers PendingAudio::takeAll()
{
    frames_ = 0;
    return std::exchange(buffers_, {});
}

} // namespace corvandi
