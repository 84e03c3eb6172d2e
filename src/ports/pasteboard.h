#pragma once

#include <QCoroTask>

#include <QString>

#include <cstdint>
#include <optional>

namespace corvandi {

namespace pasteboard_type {
/// Plain text in whatever targets the platform's applications ask for.
inline const QString string = QStringLiteral("public.utf8-plain-text");
/// Marks the content as not to be recorded; its value is the empty string. Adapters add the hints that
/// the platform's own clipboard managers honour.
inline const QString concealed = QStringLiteral("org.nspasteboard.ConcealedType");
} // namespace pasteboard_type

/// The general clipboard of the session.
///
/// Thread: main thread only.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// The present content as plain text; nothing when there is none in that form, or when its owner
    /// does not answer in time (the adapter bounds the wait). Never blocks the thread.
    [[nodiscard]] virtual QCoro::Task<std::optional<QString>> string() = 0;
    /// Whether the present content is marked as not to be recorded, as `concealed` does; false when its owner
    /// does not say so in time. Never blocks the thread.
    [[nodiscard]] virtual QCoro::Task<bool> isConcealed() = 0;
    /// Takes the clipboard over and makes it empty.
    virtual void clearContents() = 0;
    /// Adds one form of content to what `clearContents` has begun. Returns false when the platform did
    /// not accept it.
    virtual bool setString(const QString& value, const QString& type) = 0;
    /// Grows whenever anybody, this program included, takes the clipboard over.
    [[nodiscard]] virtual int64_t changeCount() = 0;
};

} // namespace corvandi
