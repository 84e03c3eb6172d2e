#pragma once

#include "ports/pasteboard.h"

#include <functional>
#include <map>

namespace corvandi::testing {

/// A clipboard in memory.
class FakePasteboard : public Pasteboard {
public:
    bool acceptsText = true;
    /// Whether the program that has the clipboard gives what it holds.
    bool ownerAnswers = true;
    std::map<QString, QString> content;
    int64_t changes = 0;
    /// The number of times the text was asked for.
    int reads = 0;
    /// Runs while somebody waits for the text.
    std::function<void()> onRead;

    [[nodiscard]] QCoro::Task<std::optional<QString>> string() override
    {
        ++reads;
        if (onRead)
            onRead();
        co_return ownerAnswers ? text() : std::nullopt;
    }
    [[nodiscard]] QCoro::Task<bool> isConcealed() override
    {
        co_return ownerAnswers&& content.contains(pasteboard_type::concealed);
    }
    void clearContents() override
    {
        takeOverFromOutside({});
        isOwner_ = true;
    }
    bool setString(const QString& value, const QString& type) override
    {
        if (!isOwner_ || (!acceptsText && type == pasteboard_type::string))
            return false;
        content[type] = value;
        return true;
    }
    [[nodiscard]] int64_t changeCount() override { return changes; }

    [[nodiscard]] std::optional<QString> text() const
    {
        const auto found = content.find(pasteboard_type::string);
        return found == content.end() ? std::nullopt : std::optional(found->second);
    }
    [[nodiscard]] bool isMarked() const { return content.contains(pasteboard_type::concealed); }
    /// Somebody else copies `text`.
    void copyFromOutside(const QString& text) { takeOverFromOutside({{pasteboard_type::string, text}}); }
    /// Somebody else takes the clipboard over with these forms.
    void takeOverFromOutside(std::map<QString, QString> forms)
    {
        content = std::move(forms);
        ++changes;
        isOwner_ = false;
        ownerAnswers = true;
    }

private:
    bool isOwner_ = false;
};

} // namespace corvandi::testing
