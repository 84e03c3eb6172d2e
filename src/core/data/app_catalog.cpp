#include "core/data/app_catalog.h"

#include "core/text/regex.h"

#include <QSet>

namespace corvandi {
namespace {

std::unique_ptr<icu::Collator> collatorFor(const Locale& locale)
{
    UErrorCode status = U_ZERO_ERROR;
    const QByteArray tag = locale.bcp47().toUtf8();
    const auto named =
        icu::Locale::forLanguageTag({tag.constData(), static_cast<int32_t>(tag.size())}, status);
    status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(named, status));
    if (U_FAILURE(status))
        return nullptr;
    // Letters and accents; case would be the third level.
    collator->setStrength(icu::Collator::SECONDARY);
    return collator;
}

} // namespace

NameOrder::NameOrder(const Locale& locale)
    : collator_(collatorFor(locale))
{
}

bool NameOrder::isBefore(const QString& name, const QString& other) const
{
    if (!collator_)
        return name.compare(other, Qt::CaseInsensitive) < 0;
    UErrorCode status = U_ZERO_ERROR;
    return collator_->compare(readableByIcu(name), readableByIcu(other), status) == UCOL_LESS;
}

AppCatalog::AppCatalog(ApplicationDirectory& directory, const Workspace& workspace, const Locale& locale)
    : directory_(directory)
    , workspace_(workspace)
    , locale_(locale)
{
}

std::vector<AppInfo> AppCatalog::runningApps() const
{
    std::vector<AppInfo> apps;
    for (const RunningApplication& application : directory_.runningApplications()) {
        if (application.isRegular && isUsable(application.bundleID))
            apps.push_back(
                {*application.bundleID, application.localizedName.value_or(*application.bundleID)});
    }
    return listed(apps);
}

std::vector<AppInfo> AppCatalog::installedApps() const
{
    std::vector<AppInfo> apps;
    for (const InstalledApplication& application : directory_.installedApplications()) {
        if (auto app = usablePick(application))
            apps.push_back(*std::move(app));
    }
    return listed(apps);
}

std::optional<AppInfo> AppCatalog::usablePick(const InstalledApplication& application) const
{
    if (!isUsable(application.bundleID))
        return std::nullopt;
    QString name = application.displayName;
    name.remove(QLatin1String(".app"), Qt::CaseSensitive);
    return AppInfo{*application.bundleID, name};
}

QString AppCatalog::icon(const QString& bundleID) const
{
    return directory_.iconOf(bundleID).value_or(QStringLiteral("application-x-executable"));
}

bool AppCatalog::isUsable(const std::optional<QString>& bundleID) const
{
    return bundleID && bundleID != workspace_.ownIdentifier();
}

std::vector<AppInfo> AppCatalog::listed(const std::vector<AppInfo>& apps) const
{
    std::vector<AppInfo> result;
    QSet<QString> seen;
    for (const AppInfo& app : apps) {
        if (seen.contains(app.bundleID))
            continue;
        seen.insert(app.bundleID);
        result.push_back(app);
    }
    sortByName(result, NameOrder(locale_));
    return result;
}

} // namespace corvandi
