#pragma once

#include "base/locale.h"
#include "core/data/history.h"
#include "core/text/vocab_book.h"
#include "ports/file_system.h"
#include "ports/system_log.h"
#include "ports/work_queue.h"

#include <QByteArray>
#include <QString>
#include <QUuid>

#include <functional>
#include <optional>
#include <vector>

namespace corvandi {

/// The user's data that outlives a run: the history of transcripts and the vocabulary. Owns the only
/// live copy of each, loads both when it is created, and writes the whole file again after every change.
///
/// A change is made to a copy, which is encoded and then takes the place of the live value at once; the
/// bytes go to the disk on the work queue, in the order of the changes. A failed write is logged and not
/// rolled back; the next one brings the file up to date. Nothing that is read from outside while the
/// program runs is noticed.
///
/// Thread: main thread only.
class Store {
public:
    /// What the history keeps at most; the oldest entries go first.
    static constexpr std::size_t historyLimit = 1000;

    /// `directory` is created when it is missing. A file that can't be read as what it should be is set
    /// aside with the suffix ".corrupt", and its part starts empty; a vocabulary of the earlier form is
    /// written anew at once. All of this waits for the disk. `locale` is the user's, for `listHistory`.
    /// The referees outlive the store; `files` and `log` also outlive what is done on `queue`.
    Store(const QString& directory, FileSystem& files, WorkQueue& queue, SystemLog& log,
          const Locale& locale);

    /// Records `text` as the newest entry.
    void addHistory(const QString& text, Date date);
    void deleteHistory(const QUuid& id);
    /// Removes a history that was set aside, too.
    void clearHistory();
    /// The entries to show, newest first: all of them without a query or with one of nothing but spaces
    /// and tabs, else those whose text contains the query without regard to letter case, as the user's
    /// language compares.
    [[nodiscard]] std::vector<HistoryEntry> listHistory(const std::optional<QString>& query = {}) const;
    /// Newest first.
    [[nodiscard]] const std::vector<HistoryEntry>& history() const { return history_.entries(); }

    /// A scope's list as stored; empty for an application without an entry.
    [[nodiscard]] std::vector<VocabRule> rules(const VocabScope& scope) const;
    /// Makes a rule with a fresh identifier and adds it to the scope, its texts unchanged.
    void addVocab(const QString& from, const QString& to, const VocabScope& scope);
    void updateVocab(const QUuid& id, const QString& from, const QString& to, const VocabScope& scope);
    void deleteVocab(const QUuid& id, const VocabScope& scope);
    void addApp(const QString& bundleID, const QString& name);
    void removeApp(const QString& bundleID);
    [[nodiscard]] const VocabBook& vocabBook() const { return vocabBook_; }

private:
    template<class Value>
    [[nodiscard]] Value load(const QString& path, Value (*decode)(const QByteArray&));
    void setAside(const QString& path);
    void commit(History history);
    void commit(VocabBook book);
    /// Whether `encode` gave bytes; they are then on their way to the file.
    /// What stands at `obsolete` goes with it.
    [[nodiscard]] bool persist(const QString& path, const std::function<QByteArray()>& encode,
                               const QString& obsolete = {});

    QString historyPath_;
    QString vocabPath_;
    FileSystem& files_;
    WorkQueue& queue_;
    SystemLog& log_;
    TextFolding folding_;
    History history_{folding_};
    VocabBook vocabBook_;
};

} // namespace corvandi
