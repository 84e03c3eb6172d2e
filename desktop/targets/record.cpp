#include "record.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>

namespace corvandi::targets {
namespace {

std::string escaped(const std::string& text)
{
    std::string result;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '\\') {
            result += "\\\\";
        } else if (byte < 0x20 || byte == 0x7f) {
            std::array<char, 5> code{};
            std::snprintf(code.data(), code.size(), "\\x%02x", byte);
            result += code.data();
        } else {
            result += character;
        }
    }
    return result;
}

} // namespace

Record::Record(const char* path)
    : file_(::open(path, O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600))
{
    if (file_ < 0) {
        std::perror(path);
        std::exit(EXIT_FAILURE);
    }
}

Record::~Record()
{
    ::close(file_);
}

void Record::key(unsigned long symbol, Alt alt) const
{
    std::array<char, 32> payload{};
    std::snprintf(payload.data(), payload.size(), "%lx %d", symbol, alt == Alt::down ? 1 : 0);
    write("key", payload.data());
}

void Record::text(const std::string& text)
{
    if (text.size() >= text_.size() && text.starts_with(text_))
        write("add", text.substr(text_.size()));
    else
        write("text", text);
    text_ = text;
}

void Record::write(const char* kind, const std::string& payload) const
{
    using std::chrono::steady_clock;
    const auto now = std::chrono::nanoseconds(steady_clock::now().time_since_epoch()).count();
    const std::string line = std::to_string(now) + ' ' + kind + ' ' + escaped(payload) + '\n';
    if (::write(file_, line.data(), line.size()) != static_cast<ssize_t>(line.size()))
        std::perror("record");
}

} // namespace corvandi::targets
