#pragma once

#include <QString>
#include <QStringView>

#include <cstdint>
#include <string>
#include <vector>

namespace corvandi {

/// A text together with its full case folding, in which two texts that differ only in letter case are
/// equal ("ß" and "SS" both fold to "ss"). A folding may be longer than its character, so places in the
/// folding and in the text correspond only at the bounds of characters. The text is valid UTF-16.
class FoldedText {
public:
    FoldedText() = default;
    explicit FoldedText(const QString& text);

    [[nodiscard]] const QString& text() const { return text_; }
    [[nodiscard]] const std::u16string& folding() const { return folding_; }

    /// Whether a whole word or phrase of the text has its folding from `begin` to before `end`: there are
    /// whole characters there, and no word character stands right before or behind them.
    [[nodiscard]] bool isWhole(std::size_t begin, std::size_t end) const;

    /// How many units of the text have their folding from `begin` to before `end`, both bounds of
    /// characters.
    [[nodiscard]] qsizetype lengthOf(std::size_t begin, std::size_t end) const;

    /// Appends the part of `source` whose folding goes from `begin` to before `end`, both bounds of
    /// characters.
    void append(const FoldedText& source, std::size_t begin, std::size_t end);
    void append(const FoldedText& source) { append(source, 0, source.folding_.size()); }

private:
    static constexpr std::int32_t insideCharacter = -1;

    void appendFolded(qsizetype begin, qsizetype end);

    QString text_;
    std::u16string folding_;
    /// For each unit of the folding, and for its end: where the character begins in the text whose folding
    /// begins here.
    std::vector<std::int32_t> origins_ = {0};
};

} // namespace corvandi
