#include "system/files/private_folder.h"

#include <QFile>

#include <filesystem>
#include <system_error>

namespace corvandi {
namespace {

namespace fs = std::filesystem;

constexpr fs::perms ofOthers = fs::perms::group_all | fs::perms::others_all;

void takeRights(const fs::path& path, SystemLog& log)
{
    std::error_code error;
    const fs::perms rights = fs::status(path, error).permissions();
    if (error || (rights & ofOthers) == fs::perms::none)
        return;
    fs::permissions(path, ofOthers, fs::perm_options::remove, error);
    if (error)
        log.write(
            QStringLiteral("failed to make %1 private: %2")
                .arg(QFile::decodeName(path.filename().c_str()), QString::fromStdString(error.message())));
}

} // namespace

void makePrivate(const QString& folder, SystemLog& log)
{
    const fs::path path(QFile::encodeName(folder).toStdString());
    std::error_code error;
    if (!fs::is_directory(path, error))
        return;
    takeRights(path, log);
    for (auto entry = fs::directory_iterator(path, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        std::error_code gone;
        if (entry->is_regular_file(gone))
            takeRights(entry->path(), log);
    }
}

} // namespace corvandi
