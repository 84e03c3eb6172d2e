#include "engines/shared/adaptation_file.h"

#include "base/error.h"
#include "base/json.h"

#include <utility>

namespace corvandi {
namespace {

Adaptation parse(const QByteArray& content)
{
    const Json document = parseJson(content);
    return {stringMember(document, "engine"), numberMember(document, "speechLevel")};
}

QByteArray format(const Adaptation& adaptation)
{
    JsonWriter json;
    json.beginObject();
    json.member("engine", QStringView(adaptation.engine));
    json.member("speechLevel", adaptation.speechLevel.value_or(0));
    json.endObject();
    return json.json();
}

} // namespace

AdaptationFile::AdaptationFile(std::shared_ptr<FileSystem> files, SystemLog& log, QString folder)
    : files_(std::move(files))
    , log_(log)
    , folder_(std::move(folder))
{
}

Adaptation AdaptationFile::read()
{
    try {
        if (files_->exists(path()))
            return parse(files_->read(path()));
    } catch (const std::exception& error) {
        log_.write(QStringLiteral("the speech engine begins anew, as what it had learned can't be read: ") +
                   describe(error));
    }
    return {};
}

void AdaptationFile::write(const Adaptation& adaptation)
{
    try {
        files_->createDirectory(folder_);
        files_->writeAtomically(path(), format(adaptation));
        hasFailedToWrite_ = false;
    } catch (const std::exception& error) {
        if (!std::exchange(hasFailedToWrite_, true))
            log_.write(QStringLiteral("what the speech engine has learned can't be kept: ") +
                       describe(error));
    }
}

QString AdaptationFile::path() const
{
    return folder_ + QStringLiteral("/speech-adaptation.json");
}

} // namespace corvandi
