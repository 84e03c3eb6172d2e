#pragma once

#include <QString>

#include <exception>

namespace corvandi {

/// An operation's failure, with the sentence that describes it to a person. Errors of the program's
/// own making carry the domain "Corvandi" and the code 1.
class Error : public std::exception {
public:
    explicit Error(QString description, QString domain = QStringLiteral("Corvandi"), int code = 1)
        : description_(std::move(description))
        , domain_(std::move(domain))
        , code_(code)
        , utf8_(description_.toUtf8())
    {
    }

    [[nodiscard]] const QString& description() const { return description_; }
    [[nodiscard]] const QString& domain() const { return domain_; }
    [[nodiscard]] int code() const { return code_; }
    [[nodiscard]] const char* what() const noexcept override { return utf8_.constData(); }

private:
    QString description_;
    QString domain_;
    int code_;
    QByteArray utf8_;
};

/// What an exception says to a person: an `Error`'s description, else its `what()`.
[[nodiscard]] inline QString describe(const std::exception& error)
{
    if (const auto* own = dynamic_cast<const Error*>(&error))
        return own->description();
    return QString::fromUtf8(error.what());
}

} // namespace corvandi
