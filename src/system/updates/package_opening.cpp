#include "system/updates/package_opening.h"

#include <QThread>

namespace corvandi {
namespace {

using namespace std::chrono_literals;

/// xdg-open comes back within a second where a desktop does the work, with its complaint or without.
constexpr std::chrono::milliseconds patience = 5s;

UpdateFailure notOpened(const QString& path, const QString& complaint)
{
    return {UpdateFailure::Kind::notOpened, QStringLiteral("%1\n(%2)").arg(path, complaint)};
}

} // namespace

PackageOpening::PackageOpening(std::shared_ptr<PackageFile> file, const Release& release,
                               UpdatePackage::Opened opened)
    : file_(std::move(file))
{
    if (const auto failure =
            file_->verify(release, [] { return QThread::currentThread()->isInterruptionRequested(); })) {
        opened(*failure);
        return;
    }
    file_->keep();
    opening_ = std::make_unique<FileOpening>(
        file_->path(), patience,
        [opened = std::move(opened), path = file_->path()](const std::optional<QString>& complaint) {
            if (complaint)
                opened(notOpened(path, *complaint));
            else
                opened(std::nullopt);
        });
}

} // namespace corvandi
