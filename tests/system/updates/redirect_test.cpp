#include "update_fixture.h"

namespace corvandi {
namespace {

using namespace testing;
using Kind = UpdateFailure::Kind;

class UpdateRedirectTest : public UpdateTest {
protected:
    UpdateRedirectTest() { server.serve(QStringLiteral("/there"), signer.feed(manifest)); }
    void redirectFeed(const QByteArray& location) { server.redirect(QStringLiteral("/feed"), location); }
};

TEST_F(UpdateRedirectTest, IsFollowedOnThisMachine)
{
    redirectFeed(server.url(QStringLiteral("/there")).toEncoded());
    EXPECT_TRUE(feedIsGood());
}

TEST_F(UpdateRedirectTest, MayBeRelative)
{
    redirectFeed("/there");
    EXPECT_TRUE(feedIsGood());
}

TEST_F(UpdateRedirectTest, ToAnotherMachineWithoutEncryptionIsRefused)
{
    for (const char* location :
         {"http://192.0.2.1/feed", "http://updates.example/feed", "//updates.example/feed",
          "http://127.0.0.1.updates.example/", "http://127.0.0.1@192.0.2.1/"}) {
        redirectFeed(location);
        EXPECT_EQ(feedFailure().kind, Kind::insecure) << location;
    }
}

TEST_F(UpdateRedirectTest, ToSomethingElseThanTheWebIsRefused)
{
    for (const char* location :
         {"file:///etc/passwd", "ftp://127.0.0.1/feed", "data:text/plain,feed", "qrc:/feed"}) {
        redirectFeed(location);
        EXPECT_EQ(feedFailure().kind, Kind::insecure) << location;
    }
}

TEST_F(UpdateRedirectTest, ToNowhereIsRefused)
{
    server.refuse(QStringLiteral("/feed"), "302 Found");
    EXPECT_EQ(feedFailure().kind, Kind::refused);
}

TEST_F(UpdateRedirectTest, WithoutEndIsRefused)
{
    redirectFeed("/feed");
    EXPECT_EQ(feedFailure().kind, Kind::refused);
    EXPECT_EQ(server.requests().size(), 6U);
}

TEST_F(UpdateRedirectTest, IsFollowedFiveTimes)
{
    redirectFeed("/1");
    server.redirect(QStringLiteral("/1"), "/2");
    server.redirect(QStringLiteral("/2"), "/3");
    server.redirect(QStringLiteral("/3"), "/4");
    server.redirect(QStringLiteral("/4"), "/there");
    EXPECT_TRUE(feedIsGood());
}

} // namespace
} // namespace corvandi
