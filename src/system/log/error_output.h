#pragma once

#include "base/file_descriptor.h"

#include <QByteArray>

#include <cstddef>

namespace corvandi {

/// Writes whole lines to a file that was opened by somebody else, usually the standard error output,
/// without ever waiting for its reader and without dying when the reader has gone.
///
/// Terminals and pipes are opened a second time for that: switching the given descriptor itself to
/// non-blocking would switch it for every process that shares it. What a full pipe or a stopped
/// terminal can't take is lost; the next line that gets through is preceded by one that says how many.
///
/// Thread: one at a time.
class ErrorOutput {
public:
    /// `descriptor` stays the caller's and must stay open; an invalid one takes no lines.
    explicit ErrorOutput(int descriptor);

    /// `line` has no line end; at most PIPE_BUF bytes with it, so that a pipe takes all of it or nothing.
    void writeLine(const QByteArray& line);

private:
    enum class Kind { file, stream, socket };

    [[nodiscard]] bool put(const QByteArray& text) const;

    int descriptor_;
    Kind kind_;
    FileDescriptor reopened_;
    size_t lost_ = 0;
};

} // namespace corvandi
