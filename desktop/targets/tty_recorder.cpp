// tty_recorder FILE: runs in a terminal, shows what is typed, and records each byte when it arrives.

#include "record.h"

#include <termios.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace {

using corvandi::targets::Record;

/// Bytes as the program gets them: no line editing, no signals, no flow control.
void makeRaw()
{
    termios settings{};
    ::tcgetattr(STDIN_FILENO, &settings);
    ::cfmakeraw(&settings);
    ::tcsetattr(STDIN_FILENO, TCSANOW, &settings);
}

void show(const std::string& bytes)
{
    std::string shown;
    for (const char byte : bytes)
        shown += byte == '\r' ? std::string("\r\n") : std::string(1, byte);
    (void)!::write(STDOUT_FILENO, shown.data(), shown.size());
}

/// Tells the sequences that the terminal sends for other things than text from text.
class Input {
public:
    explicit Input(const char* path)
        : record_(path)
    {
        record_.ready();
    }

    void take(std::string_view bytes)
    {
        pending_ += bytes;
        std::string text;
        while (!pending_.empty() && !isStartOfSequence()) {
            if (takeSequence())
                continue;
            text += pending_.front();
            pending_.erase(0, 1);
        }
        if (text.empty())
            return;
        record_.add(text);
        show(text);
    }

private:
    static constexpr std::string_view focusIn_ = "\033[I";
    static constexpr std::string_view focusOut_ = "\033[O";
    static constexpr std::string_view f12_ = "\033[24~";
    static constexpr unsigned long f12Symbol_ = 0xffc9;

    [[nodiscard]] bool isStartOfSequence() const
    {
        for (const std::string_view sequence : {focusIn_, focusOut_, f12_}) {
            if (pending_.size() < sequence.size() && sequence.starts_with(pending_))
                return true;
        }
        return false;
    }

    bool takeSequence()
    {
        for (const std::string_view sequence : {focusIn_, focusOut_, f12_}) {
            if (!std::string_view(pending_).starts_with(sequence))
                continue;
            if (sequence == focusIn_)
                record_.focus();
            if (sequence == f12_)
                record_.key(f12Symbol_, Record::Alt::up);
            pending_.erase(0, sequence.size());
            return true;
        }
        return false;
    }

    Record record_;
    std::string pending_;
};

} // namespace

int main(int count, char** arguments)
{
    if (count != 2)
        return EXIT_FAILURE;
    makeRaw();
    constexpr std::string_view reportFocus = "\033[?1004h";
    (void)!::write(STDOUT_FILENO, reportFocus.data(), reportFocus.size());
    Input input(arguments[1]);
    std::array<char, 4096> buffer{};
    for (ssize_t read = 0; (read = ::read(STDIN_FILENO, buffer.data(), buffer.size())) > 0;)
        input.take({buffer.data(), static_cast<size_t>(read)});
    return EXIT_SUCCESS;
}
