#pragma once

#include <unistd.h>

#include <utility>

namespace corvandi {

/// Owns one open file; closes it at the end.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor)
        : descriptor_(descriptor)
    {
    }
    FileDescriptor(FileDescriptor&& other) noexcept
        : descriptor_(std::exchange(other.descriptor_, none))
    {
    }
    FileDescriptor& operator=(FileDescriptor&& other) noexcept
    {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor()
    {
        if (isOpen())
            close(descriptor_);
    }

    [[nodiscard]] bool isOpen() const { return descriptor_ != none; }
    [[nodiscard]] int get() const { return descriptor_; }

private:
    static constexpr int none = -1;
    int descriptor_ = none;
};

} // namespace corvandi
