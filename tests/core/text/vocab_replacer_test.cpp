#include "core/text/vocab_replacer.h"

#include "support/vocab_rules.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

using testing::rule;

std::string applied(const std::vector<VocabRule>& rules, const std::u16string& text)
{
    return VocabReplacer().apply(rules, QStringView(text).toString()).toStdString();
}

/// The longest text that rules may make of a shorter one.
constexpr qsizetype longestGrownText = 1 << 18;

TEST(VocabReplacer, ReplacesTheWordInAnyLetterCaseAsWritten)
{
    EXPECT_EQ(applied({rule(u"gonna", u"going to")}, u"Gonna go"), "going to go");
    EXPECT_EQ(applied({rule(u"GONNA", u"Going To")}, u"gonna gOnNa"), "Going To Going To");
}

TEST(VocabReplacer, LeavesLongerWordsAlone)
{
    EXPECT_EQ(applied({rule(u"gonna", u"going to")}, u"gonnabe ugonna"), "gonnabe ugonna");
    EXPECT_EQ(applied({rule(u"ok", u"OK")}, u"okay bok"), "okay bok");
}

TEST(VocabReplacer, ReplacesBeforePunctuationAndWhatIsRightAlready)
{
    EXPECT_EQ(applied({rule(u"ok", u"OK")}, u"ok, fine"), "OK, fine");
    EXPECT_EQ(applied({rule(u"ok", u"OK")}, u"OK Ok"), "OK OK");
}

TEST(VocabReplacer, LettersMarksDigitsAndUnderscoresBelongToWords)
{
    for (const char16_t* part : {u"a", u"7", u"_", u"\u203f", u"\u00e9", u"\u4e2d", u"\u0663", u"\u200d",
                                 u"\u200c", u"\U00010428", u"\u0301", u"\u2163"}) {
        const std::u16string before = part + std::u16string(u"ok");
        const std::u16string behind = u"ok" + std::u16string(part);
        EXPECT_EQ(applied({rule(u"ok", u"-")}, before), QStringView(before).toString().toStdString());
        EXPECT_EQ(applied({rule(u"ok", u"-")}, behind), QStringView(behind).toString().toStdString());
    }
}

TEST(VocabReplacer, OtherCharactersAreBoundsOfWords)
{
    for (const char16_t* bound : {u" ", u"\n", u"-", u"'", u"\u2019", u".", u"$", u"\u00b2", u"\u00bd",
                                  u"\U0001F600", u"\u200b", u"\ufeff", u"\u00ad"}) {
        const std::u16string text = bound + std::u16string(u"ok") + bound;
        const QString expected =
            QStringView(bound).toString() + QLatin1Char('-') + QStringView(bound).toString();
        EXPECT_EQ(applied({rule(u"ok", u"-")}, text), expected.toStdString());
    }
}

TEST(VocabReplacer, TheTriggerIsTakenLiterally)
{
    EXPECT_EQ(applied({rule(u"a.b", u"-")}, u"a.b axb"), "- axb");
    EXPECT_EQ(applied({rule(u"e.g.", u"such as")}, u"e.g. this, exg. that, ae.g. e.g.b"),
              "such as this, exg. that, ae.g. e.g.b");
    for (const char16_t* syntax : {u"(", u")", u"[a]", u"{1}", u"*", u"+", u"?", u"^", u"$", u"|", u"\\",
                                   u"\\w", u"\\Q", u"\\E", u"(?i)", u"#", u"a|b", u"a-z", u"&&"}) {
        const std::u16string text = u"x " + std::u16string(syntax) + u" y";
        EXPECT_EQ(applied({rule(syntax, u"-")}, text), "x - y");
        EXPECT_EQ(applied({rule(syntax, u"-")}, u"a b 1 w"), "a b 1 w");
    }
}

TEST(VocabReplacer, TheReplacementIsTakenLiterally)
{
    for (const char16_t* to : {u"$1", u"$0", u"${a}", u"\\", u"\\1", u"\\n", u"$", u"\\u0041"})
        EXPECT_EQ(applied({rule(u"a", to)}, u"x a y"),
                  QStringLiteral("x %1 y").arg(QStringView(to).toString()).toStdString());
}

TEST(VocabReplacer, AnEmptyReplacementRemovesTheWordAlone)
{
    EXPECT_EQ(applied({rule(u"um", u"")}, u"so um yes"), "so  yes");
}

TEST(VocabReplacer, ARuleWithAnEmptyTriggerNeverApplies)
{
    EXPECT_EQ(applied({rule(u"", u"x")}, u"a b"), "a b");
    EXPECT_EQ(applied({rule(u"", u"x")}, u""), "");
    EXPECT_EQ(applied({rule(u"", u"x"), rule(u"a", u"y")}, u"a b"), "y b");
}

TEST(VocabReplacer, ATriggerMayBeAPhraseOrPunctuationOrSpace)
{
    EXPECT_EQ(applied({rule(u"new line", u"\n")}, u"a New Line b new  line"), "a \n b new  line");
    EXPECT_EQ(applied({rule(u"--", u"\u2013")}, u"a -- b ---- c"), "a \u2013 b \u2013\u2013 c");
    EXPECT_EQ(applied({rule(u"--", u"\u2013")}, u"a--b"), "a--b");
    EXPECT_EQ(applied({rule(u" ", u"_")}, u"a b  -  "), "a b _-__");
}

TEST(VocabReplacer, MatchesDoNotOverlap)
{
    EXPECT_EQ(applied({rule(u"a a", u"x")}, u"a a a a a"), "x x a");
    EXPECT_EQ(applied({rule(u"---", u"x")}, u"-------"), "xx-");
}

TEST(VocabReplacer, AMatchMayBeginInsideOneThatIsNoWholeWord)
{
    EXPECT_EQ(applied({rule(u"a a", u"x")}, u"ba a a"), "ba x");
    EXPECT_EQ(applied({rule(u"-a-a", u"x")}, u"b-a-a-a"), "b-a-a-a");
    EXPECT_EQ(applied({rule(u".a.a", u"x")}, u"b.a.a .a.a"), "b.a.a x");
}

TEST(VocabReplacer, AMatchMayBeginInsideOneThatBreaksOff)
{
    EXPECT_EQ(applied({rule(u"--!", u"x")}, u"---!"), "-x");
    EXPECT_EQ(applied({rule(u".-.-!.-", u"x")}, u".-.-.-!.-!"), ".-x!");
}

TEST(VocabReplacer, RulesApplyInOrderEachOnTheOutputOfTheOneBefore)
{
    EXPECT_EQ(applied({rule(u"a", u"b"), rule(u"b", u"c")}, u"a b"), "c c");
    EXPECT_EQ(applied({rule(u"b", u"c"), rule(u"a", u"b")}, u"a b"), "b c");
    EXPECT_EQ(applied({rule(u"a", u"1"), rule(u"a", u"2")}, u"a"), "1");
}

TEST(VocabReplacer, ARuleDoesNotSeeItsOwnOutput)
{
    EXPECT_EQ(applied({rule(u"a", u"a a")}, u"a a"), "a a a a");
    EXPECT_EQ(applied({rule(u"a b", u"b")}, u"a a b"), "a b");
}

TEST(VocabReplacer, AReplacementCanMakeAWordWholeOrNot)
{
    EXPECT_EQ(applied({rule(u"-", u"_"), rule(u"a", u"x")}, u". - .a-"), ". _ .x-");
    EXPECT_EQ(applied({rule(u"!", u"b"), rule(u"a", u"x")}, u"a !"), "x b");
    EXPECT_EQ(applied({rule(u"\u00df!", u"ss-"), rule(u"ss", u"x")}, u"\u00df! SS"), "x- x");
}

TEST(VocabReplacer, LetterCaseMayChangeTheLength)
{
    EXPECT_EQ(applied({rule(u"stra\u00dfe", u"x")}, u"STRASSE Stra\u1e9ee strasse"), "x x x");
    EXPECT_EQ(applied({rule(u"strasse", u"x")}, u"Stra\u00dfe-A"), "x-A");
    EXPECT_EQ(applied({rule(u"\ufb03", u"x")}, u"ffi FFI \ufb00i f\ufb01 -ffi"), "x x x x -x");
}

TEST(VocabReplacer, AMatchNeverEndsInsideACharacter)
{
    EXPECT_EQ(applied({rule(u"s", u"x")}, u"\u00df"), "\u00df");
    EXPECT_EQ(applied({rule(u"\U0001F600", u"x")}, u"\U0001F600\U0001F601"), "x\U0001F601");
    EXPECT_EQ(applied({rule(u"i", u"x")}, u"\u0130"), "\u0130");
    EXPECT_EQ(applied({rule(u"a", u"- -"), rule(u"s", u"x")}, u"a \u00df"), "- - \u00df");
}

TEST(VocabReplacer, DotlessAndDottedLettersAreOthers)
{
    EXPECT_EQ(applied({rule(u"i", u"x")}, u"i I \u0131 \u0130"), "x x \u0131 \u0130");
    EXPECT_EQ(applied({rule(u"\u0130", u"x")}, u"\u0130 i\u0307 i"), "x x i");
}

TEST(VocabReplacer, LettersThatShareTheirOtherCaseAreEqual)
{
    EXPECT_EQ(applied({rule(u"k", u"x")}, u"K \u212a"), "x x");
    EXPECT_EQ(applied({rule(u"s", u"x")}, u"S \u017f"), "x x");
    EXPECT_EQ(applied({rule(u"\u03c3", u"x")}, u"\u03a3 \u03c2 \u03c3"), "x x x");
    EXPECT_EQ(applied({rule(u"\u00e5", u"x")}, u"\u212b \u00c5"), "x x");
}

TEST(VocabReplacer, ComposedAndDecomposedLettersAreOthers)
{
    EXPECT_EQ(applied({rule(u"caf\u00e9", u"x")}, u"cafe\u0301"), "cafe\u0301");
    EXPECT_EQ(applied({rule(u"cafe", u"x")}, u"cafe\u0301 caf\u00e9"), "cafe\u0301 caf\u00e9");
}

TEST(VocabReplacer, LoneHalvesOfPairsCountAsTheReplacementCharacter)
{
    EXPECT_EQ(applied({}, u"a\xd83d"), "a\ufffd");
    EXPECT_EQ(applied({rule(u"a", u"\xd83d")}, u"a\xde00"), "\ufffd\ufffd");
    EXPECT_EQ(applied({rule(u"\xd83d", u"x")}, u"\U0001F600 \xd83d"), "\U0001F600 x");
}

TEST(VocabReplacer, FindsTheWordAtBothEndsOfTheText)
{
    EXPECT_EQ(applied({rule(u"a", u"x")}, u"a"), "x");
    EXPECT_EQ(applied({rule(u"a", u"x")}, u"a b a"), "x b x");
    EXPECT_EQ(applied({rule(u"abc", u"x")}, u"ab"), "ab");
}

TEST(VocabReplacer, NoTextAndNoRulesChangeNothing)
{
    EXPECT_EQ(applied({}, u"a b"), "a b");
    EXPECT_EQ(applied({rule(u"a", u"x")}, u""), "");
}

TEST(VocabReplacer, FollowsTheRulesWhenTheyChange)
{
    VocabReplacer replacer;
    const QString text = QStringLiteral("a b");
    std::vector<VocabRule> rules = {rule(u"a", u"x")};
    EXPECT_EQ(replacer.apply(rules, text), QStringLiteral("x b"));
    EXPECT_EQ(replacer.apply(rules, text), QStringLiteral("x b"));
    rules[0].to = QStringLiteral("y");
    EXPECT_EQ(replacer.apply(rules, text), QStringLiteral("y b"));
    rules[0].from = QStringLiteral("B");
    EXPECT_EQ(replacer.apply(rules, text), QStringLiteral("a y"));
    rules.push_back(rule(u"y", u"z"));
    EXPECT_EQ(replacer.apply(rules, text), QStringLiteral("a z"));
    std::ranges::reverse(rules);
    EXPECT_EQ(replacer.apply(rules, text), QStringLiteral("a y"));
    EXPECT_EQ(replacer.apply({}, text), text);
}

TEST(VocabReplacer, ARuleThatMakesTheTextTooLongIsSkipped)
{
    std::vector<VocabRule> rules(24, rule(u"a", u"a a"));
    rules.push_back(rule(u"a", u"b"));
    const QString result = VocabReplacer().apply(rules, QStringLiteral("a"));
    EXPECT_EQ(result.size(), longestGrownText - 1);
    EXPECT_TRUE(result.startsWith(QStringLiteral("b b")));
}

TEST(VocabReplacer, ATextMayGrowUpToItsLimitExactly)
{
    const VocabRule exact{QUuid(), QStringLiteral("a"), QString(longestGrownText - 1, QLatin1Char('x'))};
    EXPECT_EQ(VocabReplacer().apply({exact}, QStringLiteral("a.")).size(), longestGrownText);
    EXPECT_EQ(VocabReplacer().apply({exact}, QStringLiteral("a..")), QStringLiteral("a.."));
}

TEST(VocabReplacer, ATextBeyondTheLimitIsReplacedInAsLongAsItDoesNotGrow)
{
    const QString text = QStringLiteral("a ").repeated(longestGrownText);
    EXPECT_TRUE(VocabReplacer().apply({rule(u"a", u"b")}, text) ==
                QStringLiteral("b ").repeated(longestGrownText));
    EXPECT_TRUE(VocabReplacer().apply({rule(u"a", u"bb")}, text) == text);
}

TEST(VocabReplacer, ALongTriggerIsNoTrouble)
{
    const QString trigger = QStringLiteral("ab ").repeated(300'000) + QLatin1Char('c');
    const std::vector<VocabRule> rules = {{QUuid(), trigger, QStringLiteral("x")}};
    EXPECT_TRUE(VocabReplacer().apply(rules, trigger.toUpper() + QStringLiteral(" d")) ==
                QStringLiteral("x d"));
    EXPECT_EQ(VocabReplacer().apply(rules, QStringLiteral("ab ab c")), QStringLiteral("ab ab c"));
}

TEST(VocabReplacer, PartsThatRepeatDoNotMakeTheTimeGrowWithASquare)
{
    const QString dashes(100'000, QLatin1Char('-'));
    const std::vector<VocabRule> rules = {{QUuid(), dashes + QLatin1Char('!'), QStringLiteral("x")}};
    const QString text = dashes.repeated(10);
    EXPECT_TRUE(VocabReplacer().apply(rules, text) == text);
    EXPECT_TRUE(VocabReplacer().apply(rules, text + QLatin1Char('!')) ==
                dashes.repeated(9) + QLatin1Char('x'));
}

TEST(VocabReplacer, ThousandsOfRulesAreNoTrouble)
{
    std::vector<VocabRule> rules;
    for (int i = 0; i < 5000; ++i)
        rules.push_back({QUuid(), QStringLiteral("word%1").arg(i), QStringLiteral("word%1").arg(i + 1)});
    EXPECT_EQ(VocabReplacer().apply(rules, QStringLiteral("say Word0 and WORD4999")),
              QStringLiteral("say word5000 and word5000"));
}

} // namespace
} // namespace corvandi
