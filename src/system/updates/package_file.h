#pragma once

#include "shell/updates/release.h"
#include "shell/updates/update_failure.h"

#include <QFile>
#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace corvandi {

/// The file of a package that is being downloaded, or was: readable for the user alone, and not
/// executable. Destroying it removes the file, unless it was kept.
///
/// Thread: one at a time; every call waits for the disk.
class PackageFile {
public:
    /// An empty file for `release` in `folder`, which belongs to this class alone: it is made when it is
    /// missing, closed to other users, and cleared of what a former run has left there.
    [[nodiscard]] static UpdateResult<std::unique_ptr<PackageFile>> create(const QString& folder,
                                                                           const Release& release);
    ~PackageFile();
    PackageFile(const PackageFile&) = delete;
    PackageFile& operator=(const PackageFile&) = delete;

    /// Where it lies; its name tells the version and ends as the desktop expects.
    [[nodiscard]] QString path() const { return file_.fileName(); }
    /// Puts bytes at the end.
    [[nodiscard]] std::optional<UpdateFailure> append(std::string_view bytes);
    /// Nothing more is written.
    [[nodiscard]] std::optional<UpdateFailure> finish();
    /// Reads the whole file, as it is now, and compares it with what was signed. `isInterrupted` is asked
    /// many times a second; once it says yes, the answer is `tampered`.
    [[nodiscard]] std::optional<UpdateFailure> verify(const Release& release,
                                                      const std::function<bool()>& isInterrupted) const;
    /// The file stays from now on.
    void keep() { isKept_ = true; }

private:
    explicit PackageFile(const QString& path);
    [[nodiscard]] UpdateFailure failure() const;

    QFile file_;
    bool isKept_ = false;
};

} // namespace corvandi
