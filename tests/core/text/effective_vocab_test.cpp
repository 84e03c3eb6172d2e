#include "core/text/vocab_book.h"

#include "core/text/unicode.h"
#include "difficult_texts.h"
#include "support/vocab_rules.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

using testing::rule;
using Rules = std::vector<VocabRule>;

const QString editor = QStringLiteral("org.example.editor");

Rules effective(const Rules& global, const Rules& inEditor)
{
    const VocabBook book{global, {{editor, QStringLiteral("Editor"), inEditor}}};
    return book.effectiveVocab(editor);
}

/// The texts, such as "a1 B3".
std::string shown(const Rules& rules)
{
    QString text;
    for (const VocabRule& each : rules)
        text += (text.isEmpty() ? QString() : QStringLiteral(" ")) + each.from + each.to;
    return text.toStdString();
}

TEST(EffectiveVocab, WithoutAnApplicationItIsTheGlobalList)
{
    const VocabBook book{{rule(u"a", u"1")}, {{editor, QString(), {rule(u"a", u"2")}}}};
    EXPECT_EQ(book.effectiveVocab(std::nullopt), book.global);
}

TEST(EffectiveVocab, OfAnApplicationWithoutAnEntryItIsTheGlobalList)
{
    const VocabBook book{{rule(u"a", u"1")}, {{editor, QString(), {rule(u"a", u"2")}}}};
    EXPECT_EQ(book.effectiveVocab(editor.toUpper()), book.global);
    EXPECT_EQ(book.effectiveVocab(QString()), book.global);
}

TEST(EffectiveVocab, OfAnApplicationWithoutRulesItIsTheGlobalList)
{
    const Rules global = {rule(u"a", u"1"), rule(u"A", u"2")};
    EXPECT_EQ(effective(global, {}), global);
}

TEST(EffectiveVocab, OnlyTheFirstEntryOfAnApplicationCounts)
{
    const VocabBook book{{rule(u"a", u"1")},
                         {{editor, QString(), {}}, {editor, QString(), {rule(u"a", u"2")}}}};
    EXPECT_EQ(shown(book.effectiveVocab(editor)), "a1");
}

TEST(EffectiveVocab, AnApplicationsRuleReplacesTheGlobalOneInPlaceOrFollowsAtTheEnd)
{
    const Rules result =
        effective({rule(u"a", u"1"), rule(u"b", u"2")}, {rule(u"B", u"3"), rule(u"c", u"4")});
    EXPECT_EQ(shown(result), "a1 B3 c4");
}

TEST(EffectiveVocab, TheRulesOfTheApplicationKeepTheirIdentifiers)
{
    const VocabRule overriding = rule(u"a", u"2");
    EXPECT_EQ(effective({rule(u"a", u"1")}, {overriding}), Rules{overriding});
}

TEST(EffectiveVocab, AGlobalListIsNotNeeded)
{
    EXPECT_EQ(shown(effective({}, {rule(u"b", u"1"), rule(u"a", u"2")})), "b1 a2");
}

TEST(EffectiveVocab, OfTwoGlobalRulesWithTheTriggerOnlyTheFirstIsReplaced)
{
    EXPECT_EQ(shown(effective({rule(u"x", u"0"), rule(u"a", u"1"), rule(u"A", u"2")}, {rule(u"a", u"3")})),
              "x0 a3 A2");
}

TEST(EffectiveVocab, OfTwoRulesOfTheApplicationWithTheTriggerTheLastWins)
{
    EXPECT_EQ(shown(effective({rule(u"a", u"1"), rule(u"a", u"2")}, {rule(u"A", u"3"), rule(u"a", u"4")})),
              "a4 a2");
    EXPECT_EQ(shown(effective({}, {rule(u"b", u"1"), rule(u"c", u"2"), rule(u"B", u"3")})), "B3 c2");
}

TEST(EffectiveVocab, EmptyTriggersAreEqual)
{
    EXPECT_EQ(shown(effective({rule(u"", u"1")}, {rule(u"", u"2")})), "2");
}

TEST(EffectiveVocab, TriggersAreComparedInLowerCaseNotByTheirFolding)
{
    EXPECT_EQ(shown(effective({rule(u"Ä", u"1")}, {rule(u"ä", u"2")})), "ä2");
    EXPECT_EQ(shown(effective({rule(u"ß", u"1")}, {rule(u"ss", u"2")})), "ß1 ss2");
    EXPECT_EQ(shown(effective({rule(u"ß", u"1")}, {rule(u"ẞ", u"2")})), "ẞ2");
}

TEST(EffectiveVocab, WhiteSpaceInTriggersCounts)
{
    EXPECT_EQ(shown(effective({rule(u"a", u"1")}, {rule(u"a ", u"2")})), "a1 a 2");
}

/// Rule by rule, from the start each time.
Rules overriddenSlowly(Rules result, const Rules& overrides)
{
    for (const VocabRule& each : overrides) {
        const auto same = std::ranges::find_if(
            result, [&](const VocabRule& old) { return lowerCased(old.from) == lowerCased(each.from); });
        if (same == result.end())
            result.push_back(each);
        else
            *same = each;
    }
    return result;
}

TEST(EffectiveVocab, IsWhatSearchingForEachRuleFromTheStartGives)
{
    testing::DifficultTexts texts(2);
    const auto someRules = [&] {
        Rules rules(texts.below(8));
        for (VocabRule& each : rules)
            each = {QUuid::createUuid(), texts.next(2), QString()};
        return rules;
    };
    for (int i = 0; i < 500; ++i) {
        const Rules global = someRules();
        const Rules inEditor = someRules();
        EXPECT_EQ(effective(global, inEditor), overriddenSlowly(global, inEditor));
    }
}

TEST(EffectiveVocab, ManyRulesOnManyRulesAreNoTrouble)
{
    Rules global;
    Rules inEditor;
    for (int i = 0; i < 20'000; ++i) {
        global.push_back({QUuid(), QStringLiteral("word%1").arg(i), QString()});
        inEditor.push_back({QUuid(), QStringLiteral("WORD%1").arg(i + 10'000), QString()});
    }
    const Rules result = effective(global, inEditor);
    ASSERT_EQ(result.size(), 30'000U);
    EXPECT_EQ(result[9'999].from, QStringLiteral("word9999"));
    EXPECT_EQ(result[10'000].from, QStringLiteral("WORD10000"));
    EXPECT_EQ(result[29'999].from, QStringLiteral("WORD29999"));
}

} // namespace
} // namespace corvandi
