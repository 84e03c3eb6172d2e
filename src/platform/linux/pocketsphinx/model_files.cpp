#include "platform/linux/pocketsphinx/model_files.h"

#include "base/error.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace corvandi
{
namespace
{

/// The acoustic model's files whose content carries a checksum.
constexpr std::array<const char*, 3> parameterFiles{"means", "variances", "transition_matrices"};

[[noreturn]] void reject(const QString& path)
{
    throw Error(QStringLiteral("The speech model is damaged (%1). Reinstall the package "
                               "pocketsphinx-en-us.")
                    .arg(path));
}

QByteArray contents(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        reject(path);
    return file.readAll();
}

uint32_t wordAt(const QByteArray& data, qsizetype offset)
{
    uint32_t word = 0;
    std::memcpy(&word, data.constData() + offset, sizeof word);
    return word;
}

/// A text header, a byte-order mark, 32-bit numbers, and a checksum over these.
bool isIntactParameterFile(const QByteArray& data)
{
    constexpr uint32_t byteOrderMark = 0x11223344;
    constexpr int rotation = 20;
    constexpr qsizetype wordSize = sizeof(uint32_t);
    const QByteArray headerEnd("endhdr\n");
    const qsizetype header = data.indexOf(headerEnd);
    if (!data.startsWith("s3\n") || header < 0)
        return false;
    const qsizetype begin = header + headerEnd.size();
    const qsizetype checksumOffset = data.size() - wordSize;
    if (checksumOffset < begin + wordSize || (checksumOffset - begin) % wordSize != 0
        || wordAt(data, begin) != byteOrderMark)
        return false;
    uint32_t sum = 0;
    for (qsizetype offset = begin + wordSize; offset < checksumOffset; offset += wordSize)
        sum = std::rotl(sum, rotation) + wordAt(data, offset);
    return sum == wordAt(data, checksumOffset);
}

} // namespace

QString installedModelFolder()
{
    return QStringLiteral(CORVANDI_MODEL_FOLDER);
}

QString modelMissingDescription()
{
    return QStringLiteral("The English speech model is not installed. Install the package "
                          "pocketsphinx-en-us.");
}

ModelFiles::ModelFiles(const QString& folder)
    : acousticModel(folder + QLatin1String("/en-us"))
    , dictionary(folder + QLatin1String("/cmudict-en-us.dict"))
    , languageModel(folder + QLatin1String("/en-us.lm.bin"))
{
}

bool ModelFiles::arePresent() const
{
    return QFileInfo(acousticModel).isDir() && QFileInfo::exists(dictionary)
        && QFileInfo::exists(languageModel);
}

void ModelFiles::verify() const
{
    for (const char* name : parameterFiles) {
        const QString path = acousticModel + QLatin1Char('/') + QLatin1String(name);
        if (!isIntactParameterFile(contents(path)))
            reject(path);
    }
}

} // namespace corvandi
