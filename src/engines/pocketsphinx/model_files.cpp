#include "engines/pocketsphinx/model_files.h"

#include "base/error.h"
#include "engines/pocketsphinx/model_check.h"

#include <QFile>
#include <QFileInfo>

#include <array>

namespace corvandi {
namespace {

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

template<class Check>
void verifyFile(const QString& path, const Check& isIntact)
{
    if (!isIntact(contents(path)))
        reject(path);
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
    return QFileInfo(acousticModel).isDir() && QFileInfo::exists(dictionary) &&
           QFileInfo::exists(languageModel);
}

void ModelFiles::verify() const
{
    for (const char* name : parameterFiles)
        verifyFile(acousticFile(name), isIntactParameterFile);
    verifyFile(acousticFile("mdef"), isIntactDefinition);
    verifyFile(acousticFile("sendump"), [definition = contents(acousticFile("mdef"))](const auto& weights) {
        return areIntactWeights(weights, definition);
    });
    verifyFile(languageModel, isIntactLanguageModel);
    verifyFile(dictionary, isIntactDictionary);
}

QString ModelFiles::acousticFile(const char* name) const
{
    return acousticModel + QLatin1Char('/') + QLatin1String(name);
}

} // namespace corvandi
