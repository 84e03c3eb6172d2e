#include "core/text/vocab_book.h"

#include <gtest/gtest.h>

#include <unordered_set>

namespace corvandi {
namespace {

const VocabScope global = vocab_scope::Global{};

VocabScope app(const char16_t* bundleID)
{
    return vocab_scope::App{QStringView(bundleID).toString()};
}

TEST(VocabScope, AllGlobalScopesAreEqual)
{
    EXPECT_EQ(global, VocabScope(vocab_scope::Global{}));
    EXPECT_EQ(VocabScope(), global);
}

TEST(VocabScope, ApplicationsAreEqualByTheirExactIdentifier)
{
    EXPECT_EQ(app(u"org.example.Editor"), app(u"org.example.Editor"));
    EXPECT_NE(app(u"org.example.Editor"), app(u"org.example.editor"));
    EXPECT_NE(app(u"e\u0301"), app(u"\u00e9"));
}

TEST(VocabScope, AnApplicationIsNeverTheGlobalScope)
{
    EXPECT_NE(app(u""), global);
}

TEST(VocabScope, EqualScopesHaveEqualHashes)
{
    const std::hash<VocabScope> hash;
    EXPECT_EQ(hash(app(u"a")), hash(app(u"a")));
    EXPECT_EQ(hash(global), hash(VocabScope(vocab_scope::Global{})));
}

TEST(VocabScope, DifferentScopesHaveDifferentHashes)
{
    const std::hash<VocabScope> hash;
    EXPECT_NE(hash(app(u"a")), hash(app(u"b")));
    EXPECT_NE(hash(app(u"a")), hash(app(u"A")));
    EXPECT_NE(hash(app(u"")), hash(global));
}

TEST(VocabScope, CanBeTheKeyOfASet)
{
    const std::unordered_set<VocabScope> set = {global, app(u"a"), app(u"A"), app(u"a"), global};
    EXPECT_EQ(set.size(), 3U);
    EXPECT_TRUE(set.contains(app(u"A")));
    EXPECT_FALSE(set.contains(app(u"b")));
}

} // namespace
} // namespace corvandi
