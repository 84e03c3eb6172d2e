#include "engines/pocketsphinx/model_files.h"

#include "engines/pocketsphinx/pocketsphinx_framework.h"
#include "support/event_loop.h"
#include "support/recording_log.h"
#include "support/task_outcome.h"
#include "system/process/qt_main_queue.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <ostream>

namespace corvandi {
namespace {

using testing::TaskOutcome;
using testing::waitUntil;

enum class Damage { empty, cutToAQuarter, cutInHalf, shortOfAWord, overwrittenInTheMiddle, zeroed, missing };

const QStringList& modelFileNames()
{
    static const QStringList names{
        QStringLiteral("en-us/means"),        QStringLiteral("en-us/variances"),
        QStringLiteral("en-us/mdef"),         QStringLiteral("en-us/transition_matrices"),
        QStringLiteral("en-us/sendump"),      QStringLiteral("en-us/feat.params"),
        QStringLiteral("en-us/noisedict"),    QStringLiteral("en-us.lm.bin"),
        QStringLiteral("cmudict-en-us.dict"),
    };
    return names;
}

QByteArray damaged(QByteArray data, Damage damage)
{
    constexpr qsizetype overwritten = 4096;
    switch (damage) {
    case Damage::empty:
    case Damage::missing:
        return {};
    case Damage::cutToAQuarter:
        return data.left(data.size() / 4);
    case Damage::cutInHalf:
        return data.left(data.size() / 2);
    case Damage::shortOfAWord:
        return data.chopped(4);
    case Damage::overwrittenInTheMiddle:
        return data.replace(data.size() / 2, overwritten, QByteArray(overwritten, '\xa7'));
    case Damage::zeroed:
        return data.fill('\0');
    }
    return data;
}

/// The installed model with one file damaged, in a folder of its own.
class DamagedModel {
public:
    DamagedModel(const QString& name, Damage damage)
    {
        const QDir original(installedModelFolder());
        const QDir copy(folder_.path());
        copy.mkdir(QStringLiteral("en-us"));
        for (const QString& each : modelFileNames()) {
            if (each != name)
                QFile::link(original.filePath(each), copy.filePath(each));
        }
        if (damage == Damage::missing)
            return;
        QFile source(original.filePath(name));
        QFile target(copy.filePath(name));
        EXPECT_TRUE(source.open(QIODevice::ReadOnly));
        EXPECT_TRUE(target.open(QIODevice::WriteOnly));
        target.write(damaged(source.readAll(), damage));
    }
    [[nodiscard]] QString folder() const { return folder_.path(); }

private:
    QTemporaryDir folder_;
};

/// The sentence with which the model in `folder` is refused, when it is to be installed or at once.
QString refusalOf(const QString& folder)
{
    QtMainQueue queue;
    testing::RecordingLog log;
    PocketSphinxFramework framework(folder, queue, log);
    const Locale english(QStringLiteral("en-US"));
    const TaskOutcome<bool> asked(framework.needsInstallation(english));
    EXPECT_TRUE(waitUntil([&] { return asked.hasEnded(); }, std::chrono::seconds(20)));
    if (asked.hasFailed())
        return asked.failure();
    EXPECT_TRUE(asked.hasSucceeded() && asked.value());
    return TaskOutcome<>(framework.downloadAndInstall(english)).failure();
}

struct Case {
    const char* file;
    std::vector<Damage> damages;
};

/// How a case is called in the list of tests.
void PrintTo(const Case& damaged, std::ostream* out)
{
    *out << damaged.file;
}

class DamagedFile : public ::testing::TestWithParam<Case> {};

TEST_P(DamagedFile, IsRefusedWithASentenceAndTheProgramGoesOn)
{
    for (const Damage damage : GetParam().damages) {
        const DamagedModel model(QLatin1String(GetParam().file), damage);
        EXPECT_FALSE(refusalOf(model.folder()).isEmpty())
            << GetParam().file << ' ' << static_cast<int>(damage);
    }
}

const std::vector<Damage> all{
    Damage::empty,        Damage::cutToAQuarter,          Damage::cutInHalf, Damage::missing,
    Damage::shortOfAWord, Damage::overwrittenInTheMiddle, Damage::zeroed,
};
/// Of files without a checksum. What else may happen to them does no more harm than wrong words.
const std::vector<Damage> cut{Damage::empty,        Damage::cutToAQuarter, Damage::cutInHalf,
                              Damage::shortOfAWord, Damage::zeroed,        Damage::missing};
const std::vector<Damage> gross{Damage::empty, Damage::cutToAQuarter, Damage::cutInHalf, Damage::zeroed,
                                Damage::missing};

INSTANTIATE_TEST_SUITE_P(Model, DamagedFile,
                         ::testing::Values(Case{"en-us/means", all}, Case{"en-us/variances", all},
                                           Case{"en-us/transition_matrices", all}, Case{"en-us/mdef", all},
                                           Case{"en-us/sendump", gross}, Case{"en-us.lm.bin", cut},
                                           Case{"cmudict-en-us.dict", gross}));

TEST(ModelFiles, TheInstalledModelIsIntact)
{
    const ModelFiles files(installedModelFolder());
    EXPECT_TRUE(files.arePresent());
    EXPECT_NO_THROW(files.verify());
}

} // namespace
} // namespace corvandi
