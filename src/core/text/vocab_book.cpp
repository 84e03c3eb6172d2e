#include "core/text/vocab_book.h"

#include "base/error.h"
#include "base/json.h"
#include "core/text/unicode.h"

#include <QHash>

#include <algorithm>

namespace corvandi {
namespace {

/// The list of a scope, or nothing for an application without an entry. Works for a book that may be
/// changed and for one that may not.
template<class Book>
auto* listOf(Book& book, const VocabScope& scope)
{
    const auto* app = std::get_if<vocab_scope::App>(&scope);
    if (!app)
        return &book.global;
    const auto entry = std::ranges::find(book.apps, app->bundleID, &AppVocab::bundleID);
    return entry == book.apps.end() ? nullptr : &entry->rules;
}

/// `base` with the rules of an application on top.
std::vector<VocabRule> overridden(std::vector<VocabRule> base, const std::vector<VocabRule>& overrides)
{
    QHash<QString, size_t> firstWithTrigger;
    const auto positionOf = [&](const VocabRule& rule, size_t position) {
        const QString trigger = lowerCased(rule.from);
        const auto known = firstWithTrigger.constFind(trigger);
        return known != firstWithTrigger.constEnd() ? *known : *firstWithTrigger.insert(trigger, position);
    };
    for (size_t i = 0; i < base.size(); ++i)
        positionOf(base[i], i);
    for (const VocabRule& rule : overrides) {
        const size_t position = positionOf(rule, base.size());
        if (position == base.size())
            base.push_back(rule);
        else
            base[position] = rule;
    }
    return base;
}

} // namespace

std::vector<VocabRule> VocabBook::effectiveVocab(const std::optional<QString>& bundleID) const
{
    if (!bundleID)
        return global;
    const auto* appRules = listOf(*this, vocab_scope::App{*bundleID});
    if (!appRules || appRules->empty())
        return global;
    return overridden(global, *appRules);
}

std::vector<VocabRule> VocabBook::rules(const VocabScope& scope) const
{
    const auto* list = listOf(*this, scope);
    return list ? *list : std::vector<VocabRule>();
}

void VocabBook::addRule(VocabRule rule, const VocabScope& scope)
{
    if (auto* list = listOf(*this, scope))
        list->push_back(std::move(rule));
}

void VocabBook::updateRule(const QUuid& id, const QString& from, const QString& to, const VocabScope& scope)
{
    auto* list = listOf(*this, scope);
    if (!list)
        return;
    const auto rule = std::ranges::find(*list, id, &VocabRule::id);
    if (rule != list->end())
        *rule = {id, from, to};
}

void VocabBook::deleteRule(const QUuid& id, const VocabScope& scope)
{
    if (auto* list = listOf(*this, scope))
        std::erase_if(*list, [id](const VocabRule& rule) { return rule.id == id; });
}

void VocabBook::addApp(const QString& bundleID, const QString& name)
{
    if (!listOf(*this, vocab_scope::App{bundleID}))
        apps.push_back({bundleID, name, {}});
}

void VocabBook::removeApp(const QString& bundleID)
{
    std::erase_if(apps, [bundleID](const AppVocab& app) { return app.bundleID == bundleID; });
}

namespace {

VocabRule readRule(const Json& object)
{
    return {uuidMember(object, "id"), stringMember(object, "from"), stringMember(object, "to")};
}

AppVocab readApp(const Json& object)
{
    return {stringMember(object, "bundleID"), stringMember(object, "name"),
            readEach(arrayMember(object, "rules"), readRule)};
}

VocabBook readBook(const Json& object)
{
    return {readEach(arrayMember(object, "global"), readRule),
            readEach(arrayMember(object, "apps"), readApp)};
}

void write(JsonWriter& writer, const std::vector<VocabRule>& rules)
{
    writer.beginArray();
    for (const VocabRule& rule : rules) {
        writer.beginObject();
        writer.member("id", rule.id);
        writer.member("from", rule.from);
        writer.member("to", rule.to);
        writer.endObject();
    }
    writer.endArray();
}

void write(JsonWriter& writer, const AppVocab& app)
{
    writer.beginObject();
    writer.member("bundleID", app.bundleID);
    writer.member("name", app.name);
    writer.key("rules");
    write(writer, app.rules);
    writer.endObject();
}

} // namespace

std::optional<VocabBook::Decoded> VocabBook::decoded(const QByteArray& bytes)
{
    try {
        const Json document = parseJson(bytes);
        if (document.is_array())
            return Decoded{{readEach(document, readRule), {}}, true};
        return Decoded{readBook(document), false};
    } catch (const Error&) {
        return std::nullopt;
    }
}

QByteArray VocabBook::encoded() const
{
    JsonWriter writer;
    writer.beginObject();
    writer.key("global");
    write(writer, global);
    writer.key("apps");
    writer.beginArray();
    for (const AppVocab& app : apps)
        write(writer, app);
    writer.endArray();
    writer.endObject();
    return writer.json();
}

} // namespace corvandi
