#include "shell/updates/update_texts.h"

#include <gtest/gtest.h>

#include <set>

namespace corvandi {
namespace {

using Kind = UpdateFailure::Kind;

TEST(UpdateTexts, EveryFailureHasAMessageOfItsOwn)
{
    std::set<QString> messages;
    const Kind kinds[] = {Kind::unreachable, Kind::timedOut,  Kind::insecure,   Kind::refused,
                          Kind::unreadable,  Kind::untrusted, Kind::incomplete, Kind::notOpened};
    for (const Kind kind : kinds) {
        const Notice message = update_texts::failed({kind, QStringLiteral("detail")});
        EXPECT_EQ(message.text, QStringLiteral("The update didn't work."));
        EXPECT_GT(message.details.size(), 20);
        messages.insert(message.details);
    }
    EXPECT_EQ(messages.size(), std::size(kinds));
}

TEST(UpdateTexts, OnlyWhatHelpsAPersonIsQuoted)
{
    const QString detail = QStringLiteral("error 17");
    for (const Kind kind : {Kind::refused, Kind::notOpened})
        EXPECT_TRUE(update_texts::failed({kind, detail}).details.contains(detail));
    for (const Kind kind : {Kind::unreachable, Kind::insecure, Kind::unreadable, Kind::untrusted})
        EXPECT_FALSE(update_texts::failed({kind, detail}).details.contains(detail));
}

TEST(UpdateTexts, PercentSignsInNotesAreLeftAlone)
{
    const Release release{Version::parse(QStringLiteral("1.2")).value(), QUrl(), QStringLiteral("%1 %2"), {}};
    const RunningProgram program{Version::parse(QStringLiteral("1.0")).value(), {}, {}};
    const Question question = update_texts::available(release, program, Attention::take);
    EXPECT_EQ(question.notice.details, QStringLiteral("You have version 1.0.\n\n%1 %2"));
}

} // namespace
} // namespace corvandi
