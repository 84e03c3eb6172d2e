#include "core/data/settings.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

TEST(InsertionMethod, ListsTypingBeforePasting)
{
    EXPECT_EQ(allInsertionMethods, (std::array{InsertionMethod::type, InsertionMethod::paste}));
}

TEST(InsertionMethod, IsStoredUnderItsRawValue)
{
    EXPECT_EQ(rawValue(InsertionMethod::type), QStringLiteral("type"));
    EXPECT_EQ(rawValue(InsertionMethod::paste), QStringLiteral("paste"));
}

TEST(InsertionMethod, EveryRawValueLeadsBackToItsMethod)
{
    for (const InsertionMethod method : allInsertionMethods)
        EXPECT_EQ(insertionMethod(rawValue(method)), method);
}

TEST(InsertionMethod, NoOtherTextIsAMethod)
{
    for (const char* text : {"", "Type", "Paste", "PASTE", "paste ", " type", "clipboard", "1"})
        EXPECT_EQ(insertionMethod(QString::fromLatin1(text)), std::nullopt) << text;
}

} // namespace
} // namespace corvandi
