#pragma once

#include <QMimeData>
#include <QString>

#include <optional>

namespace corvandi {

/// What this program puts on the clipboard. It is published empty and gains its forms afterwards: other
/// programs are told what there is when they ask, which is never before the event loop runs on.
///
/// Thread: main thread only. Owned by Qt's clipboard, which deletes it when another program takes over.
class ClipboardContent : public QMimeData {
public:
    /// Adds one form of `pasteboard_type`, or replaces it; false for a type that has no counterpart here.
    bool addForm(const QString& value, const QString& type);
    /// The plain text; nothing when that form is missing.
    [[nodiscard]] std::optional<QString> plainText() const;
};

} // namespace corvandi
