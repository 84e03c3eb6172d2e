#pragma once

#include "shell/updates/update_source.h"
#include "system/updates/file_opening.h"
#include "system/updates/package_file.h"

#include <memory>

namespace corvandi {

/// Hands a package to the system's installer, after another look whether it is still the signed one.
///
/// Thread: the one that created it, which needs an event loop and waits here for the disk.
class PackageOpening {
public:
    PackageOpening(std::shared_ptr<PackageFile> file, const Release& release, UpdatePackage::Opened opened);

private:
    std::shared_ptr<PackageFile> file_;
    std::unique_ptr<FileOpening> opening_;
};

} // namespace corvandi
