#include "support/fake_user_defaults.h"
#include "system/language_model/chat_server_model.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RewritePreferencesTest : public ::testing::Test {
protected:
    RewritePreferencesTest() { RewritePreferences::registerDefaults(defaults); }
    void set(const char* key, const char* value)
    {
        defaults.set(QString::fromLatin1(key), QString::fromUtf8(value));
    }
    [[nodiscard]] RewritePreferences read() const { return RewritePreferences::read(defaults); }

    testing::FakeUserDefaults defaults;
};

TEST_F(RewritePreferencesTest, WithoutAWordTheUsualServersAndAnyModelWillDo)
{
    EXPECT_TRUE(read().isEnabled);
    EXPECT_THAT(read().servers, IsEmpty());
    EXPECT_FALSE(read().isRefused);
    EXPECT_EQ(read().model, QString());
}

TEST_F(RewritePreferencesTest, ServerAndModelAreNamed)
{
    set("rewriteServer", "http://127.0.0.1:8080/");
    set("rewriteModel", " small:1b ");
    EXPECT_THAT(read().servers, ElementsAre(QUrl(QStringLiteral("http://127.0.0.1:8080"))));
    EXPECT_FALSE(read().isRefused);
    EXPECT_EQ(read().model, QStringLiteral("small:1b"));
}

TEST_F(RewritePreferencesTest, AnAddressElsewhereIsRefused)
{
    set("rewriteServer", "http://example.com");
    EXPECT_THAT(read().servers, IsEmpty());
    EXPECT_TRUE(read().isRefused);
}

TEST_F(RewritePreferencesTest, AnEmptyAddressIsNone)
{
    set("rewriteServer", " ");
    EXPECT_FALSE(read().isRefused);
}

TEST_F(RewritePreferencesTest, ItIsSwitchedOff)
{
    set("rewriteServerEnabled", "false");
    EXPECT_FALSE(read().isEnabled);
}

} // namespace
} // namespace corvandi
