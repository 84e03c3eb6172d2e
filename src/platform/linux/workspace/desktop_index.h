#pragma once

#include "platform/linux/workspace/desktop_entry.h"

#include <QHash>
#include <QString>

#include <vector>

namespace corvandi {

/// The installed applications, to be looked up by what their windows say. Never changes.
///
/// Thread: any.
class DesktopIndex {
public:
    DesktopIndex() = default;
    /// `entries`: each identifier once, those of the folders with more precedence first.
    DesktopIndex(std::vector<DesktopEntry> entries, QString fileManagerId);

    /// The entry with this identifier, in any case of letters; null when there is none.
    [[nodiscard]] const DesktopEntry* withId(const QString& id) const;
    /// The entry whose windows bear this class: by its own word (StartupWMClass), by its file's name
    /// (or the last part of a reversed domain name), by its executable, in this order and in any case
    /// of letters; null when there is none.
    [[nodiscard]] const DesktopEntry* withWindowClass(const QString& windowClass) const;
    /// The identifier of the application that opens folders; empty when there is none.
    [[nodiscard]] const QString& fileManagerId() const { return fileManagerId_; }
    [[nodiscard]] const std::vector<DesktopEntry>& entries() const { return entries_; }
    [[nodiscard]] size_t size() const { return entries_.size(); }

private:
    using Lookup = QHash<QString, size_t>;

    void addNames(size_t position);
    [[nodiscard]] const DesktopEntry* find(const Lookup& lookup, const QString& name) const;

    std::vector<DesktopEntry> entries_;
    Lookup byId_;
    Lookup byWmClass_;
    Lookup byLastPartOfId_;
    Lookup byExecutable_;
    QString fileManagerId_;
};

} // namespace corvandi
