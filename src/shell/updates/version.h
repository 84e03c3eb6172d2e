#pragma once

#include <QString>
#include <QVersionNumber>

#include <compare>
#include <optional>

namespace corvandi {

/// The number of a release: whole numbers with dots between them, the weightier first. Missing parts
/// count as zero, so that 1.2 equals 1.2.0.
class Version {
public:
    /// Nothing unless the text consists of one to eight parts of one to nine digits each (0 to 9).
    [[nodiscard]] static std::optional<Version> parse(const QString& text);

    /// As it was written.
    [[nodiscard]] const QString& text() const { return text_; }

    friend std::strong_ordering operator<=>(const Version& one, const Version& other)
    {
        return QVersionNumber::compare(one.number_, other.number_) <=> 0;
    }
    friend bool operator==(const Version& one, const Version& other) { return one.number_ == other.number_; }

private:
    explicit Version(const QString& text);

    QString text_;
    /// Without zeros at the end.
    QVersionNumber number_;
};

} // namespace corvandi
