#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QUuid>

#include <cstddef>
#include <functional>
#include <optional>
#include <variant>
#include <vector>

namespace corvandi {

/// One replacement: when I say this, write that.
struct VocabRule {
    /// Identity of the rule; stays when the texts are edited.
    QUuid id;
    /// The word or phrase as the recogniser writes it. May be empty; the rule then never applies.
    QString from;
    /// What it is to become.
    QString to;

    friend bool operator==(const VocabRule&, const VocabRule&) = default;
};

/// Which list of the vocabulary is meant: the one for every application, or that of one application.
/// Lives in memory only; no file holds it.
namespace vocab_scope {
struct Global {
    friend bool operator==(const Global&, const Global&) = default;
};
struct App {
    /// Compared exactly, letter case included.
    QString bundleID;
    friend bool operator==(const App&, const App&) = default;
};
} // namespace vocab_scope

using VocabScope = std::variant<vocab_scope::Global, vocab_scope::App>;

} // namespace corvandi

template<>
struct std::hash<corvandi::vocab_scope::Global> {
    [[nodiscard]] std::size_t operator()(const corvandi::vocab_scope::Global&) const noexcept { return 0; }
};
template<>
struct std::hash<corvandi::vocab_scope::App> {
    [[nodiscard]] std::size_t operator()(const corvandi::vocab_scope::App& app) const noexcept
    {
        return qHashMulti(0, 1, app.bundleID);
    }
};

namespace corvandi {

/// The rules of one application.
struct AppVocab {
    /// By this the entry is found.
    QString bundleID;
    /// The application's name when it was added; shown to the user only.
    QString name;
    /// In the user's order.
    std::vector<VocabRule> rules;

    friend bool operator==(const AppVocab&, const AppVocab&) = default;
};

/// The user's whole vocabulary, a plain value. Its operations can't fail: an unknown application or
/// identifier changes nothing. Equal triggers in one list and empty texts are kept as they are.
struct VocabBook {
    /// For every application, in the user's order.
    std::vector<VocabRule> global;
    /// In the order in which they were added. Bundle identifiers are compared exactly.
    std::vector<AppVocab> apps;

    struct Decoded;

    /// The rules to apply in an application: the global ones, in which each rule of the application takes
    /// the place of the first one with the same trigger (compared in lower case) or else follows at the
    /// end. Just the global ones when the application is not known or has no rules.
    /// Linear in the number of rules.
    [[nodiscard]] std::vector<VocabRule> effectiveVocab(const std::optional<QString>& bundleID) const;
    /// The list of a scope as stored; empty for an application without an entry.
    [[nodiscard]] std::vector<VocabRule> rules(const VocabScope& scope) const;

    /// Appends the rule to the scope's list. Never makes an entry for an application.
    void addRule(VocabRule rule, const VocabScope& scope);
    /// Gives the first rule with this identifier new texts, in place.
    void updateRule(const QUuid& id, const QString& from, const QString& to, const VocabScope& scope);
    /// Removes every rule with this identifier from the scope's list.
    void deleteRule(const QUuid& id, const VocabScope& scope);
    /// Appends an empty entry for the application, unless it has one (whose name is kept then).
    void addApp(const QString& bundleID, const QString& name);
    /// Removes every entry of the application, with its rules.
    void removeApp(const QString& bundleID);

    /// Reads the bytes of a vocabulary file; nothing when they are not one.
    [[nodiscard]] static std::optional<Decoded> decoded(const QByteArray& bytes);
    /// The bytes of the vocabulary file: compact JSON with the keys "global" (rules) and "apps", in this
    /// order; a rule has "id" (upper-case UUID), "from", "to"; an application has "bundleID", "name",
    /// "rules".
    [[nodiscard]] QByteArray encoded() const;

    friend bool operator==(const VocabBook&, const VocabBook&) = default;
};

/// A vocabulary that was read from a file.
struct VocabBook::Decoded {
    VocabBook book;
    /// The file had the earlier form, a bare array of (global) rules.
    bool migrated = false;
};

} // namespace corvandi
