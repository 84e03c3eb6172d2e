#pragma once

#include <string>

namespace corvandi::targets {

/// What an application received, one line per event: "<nanoseconds of CLOCK_MONOTONIC> <kind>
/// <payload>", each written at once and whole. Line breaks, backslashes and other control characters
/// of the payload are escaped.
class Record {
public:
    enum class Alt { up, down };

    /// Appends to the file. Ends the application when it cannot be opened.
    explicit Record(const char* path);
    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;
    ~Record();

    /// The application has a window and will see keys.
    void ready() const { write("ready", {}); }
    /// It got the keyboard.
    void focus() const { write("focus", {}); }
    /// A key press that reached it, and whether Alt was held with it.
    void key(unsigned long symbol, Alt alt) const;
    /// The text is now `text`; only what was added to it is written, if that is all that changed.
    void text(const std::string& text);
    void add(const std::string& text) const { write("add", text); }

private:
    void write(const char* kind, const std::string& payload) const;

    int file_;
    std::string text_;
};

} // namespace corvandi::targets
