#include "core/data/store.h"

#include "base/error.h"
#include "core/data/history.h"
#include "core/text/unicode.h"

namespace corvandi {
namespace {

QString fileName(const QString& path)
{
    return path.section(QLatin1Char('/'), -1);
}

QString withReason(const QString& failure, const std::exception& error)
{
    return failure + QStringLiteral(": ") + describe(error);
}

QString asideOf(const QString& path)
{
    return path + QStringLiteral(".corrupt");
}

VocabBook::Decoded decodedVocab(const QByteArray& bytes)
{
    if (auto decoded = VocabBook::decoded(bytes))
        return *std::move(decoded);
    throw Error(QStringLiteral("the data is corrupt"));
}

/// A failed write is only logged: the value in memory is ahead of the file until the next one.
void write(FileSystem& files, SystemLog& log, const QString& path, const QByteArray& bytes)
{
    try {
        files.writeAtomically(path, bytes);
    } catch (const std::exception& error) {
        log.write(withReason(QStringLiteral("failed to write ") + fileName(path), error));
    } catch (...) {
        log.write(QStringLiteral("failed to write %1: unknown error").arg(fileName(path)));
    }
}

void removeIfThere(FileSystem& files, SystemLog& log, const QString& path)
{
    try {
        if (files.exists(path))
            files.remove(path);
    } catch (const std::exception& error) {
        log.write(withReason(QStringLiteral("failed to remove ") + fileName(path), error));
    }
}

} // namespace

Store::Store(const QString& directory, FileSystem& files, WorkQueue& queue, SystemLog& log,
             const Locale& locale)
    : historyPath_(directory + QStringLiteral("/history.json"))
    , vocabPath_(directory + QStringLiteral("/vocab.json"))
    , files_(files)
    , queue_(queue)
    , log_(log)
    , folding_(locale)
{
    try {
        files_.createDirectory(directory);
    } catch (const std::exception& error) {
        log_.write(withReason(QStringLiteral("failed to create store directory"), error));
    }
    history_ = History(folding_, load(historyPath_, decodedHistory));
    VocabBook::Decoded vocab = load(vocabPath_, decodedVocab);
    vocabBook_ = std::move(vocab.book);
    if (vocab.migrated)
        (void)persist(vocabPath_, [this] { return vocabBook_.encoded(); });
}

void Store::addHistory(const QString& text, Date date)
{
    History changed = history_;
    changed.add({QUuid::createUuid(), text, date});
    changed.limit(historyLimit);
    commit(std::move(changed));
}

void Store::deleteHistory(const QUuid& id)
{
    History changed = history_;
    changed.remove(id);
    commit(std::move(changed));
}

void Store::clearHistory()
{
    History cleared(folding_);
    if (persist(
            historyPath_, [&cleared] { return cleared.encode(); }, asideOf(historyPath_)))
        history_ = std::move(cleared);
}

std::vector<HistoryEntry> Store::listHistory(const std::optional<QString>& query) const
{
    const QString wanted = trimmedOfSpacesAndTabs(query.value_or(QString()));
    return wanted.isEmpty() ? history() : history_.containing(wanted);
}

std::vector<VocabRule> Store::rules(const VocabScope& scope) const
{
    return vocabBook_.rules(scope);
}

void Store::addVocab(const QString& from, const QString& to, const VocabScope& scope)
{
    VocabBook changed = vocabBook_;
    changed.addRule({QUuid::createUuid(), from, to}, scope);
    commit(std::move(changed));
}

void Store::updateVocab(const QUuid& id, const QString& from, const QString& to, const VocabScope& scope)
{
    VocabBook changed = vocabBook_;
    changed.updateRule(id, from, to, scope);
    commit(std::move(changed));
}

void Store::deleteVocab(const QUuid& id, const VocabScope& scope)
{
    VocabBook changed = vocabBook_;
    changed.deleteRule(id, scope);
    commit(std::move(changed));
}

void Store::addApp(const QString& bundleID, const QString& name)
{
    VocabBook changed = vocabBook_;
    changed.addApp(bundleID, name);
    commit(std::move(changed));
}

void Store::removeApp(const QString& bundleID)
{
    VocabBook changed = vocabBook_;
    changed.removeApp(bundleID);
    commit(std::move(changed));
}

template<class Value>
Value Store::load(const QString& path, Value (*decode)(const QByteArray&))
{
    try {
        return files_.exists(path) ? decode(files_.read(path)) : Value();
    } catch (const std::exception& error) {
        log_.write(withReason(QStringLiteral("failed to load ") + fileName(path), error));
    }
    setAside(path);
    return {};
}

void Store::setAside(const QString& path)
{
    const QString aside = asideOf(path);
    try {
        if (files_.exists(aside))
            files_.remove(aside);
        files_.move(path, aside);
    } catch (const std::exception& error) {
        log_.write(withReason(QStringLiteral("failed to move %1 aside").arg(fileName(path)), error));
    }
}

void Store::commit(History history)
{
    if (persist(historyPath_, [&history] { return history.encode(); }))
        history_ = std::move(history);
}

void Store::commit(VocabBook book)
{
    if (persist(vocabPath_, [&book] { return book.encoded(); }))
        vocabBook_ = std::move(book);
}

bool Store::persist(const QString& path, const std::function<QByteArray()>& encode, const QString& obsolete)
{
    QByteArray bytes;
    try {
        bytes = encode();
    } catch (const std::exception& error) {
        log_.write(withReason(QStringLiteral("failed to encode ") + fileName(path), error));
        return false;
    }
    queue_.async([&files = files_, &log = log_, path, bytes, obsolete] {
        write(files, log, path, bytes);
        if (!obsolete.isEmpty())
            removeIfThere(files, log, obsolete);
    });
    return true;
}

} // namespace corvandi
