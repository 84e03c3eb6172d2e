#include "signer.h"
#include "support/recording_log.h"
#include "system/updates/public_key.h"
#include "system/updates/update_configuration.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

using namespace testing;

const QString goodFeed = QStringLiteral("https://updates.example/feed");

TEST(PublicKey, KnowsItsSignatures)
{
    const Signer signer;
    const auto key = PublicKey::fromBase64(signer.publicKey());
    ASSERT_TRUE(key);
    EXPECT_TRUE(key->hasSigned("message", signer.sign("message")));
    EXPECT_TRUE(key->hasSigned("", signer.sign("")));

    EXPECT_FALSE(key->hasSigned("messagE", signer.sign("message")));
    EXPECT_FALSE(key->hasSigned("message", Signer().sign("message")));
    EXPECT_FALSE(key->hasSigned("message", signer.sign("message").chopped(1)));
    EXPECT_FALSE(key->hasSigned("message", signer.sign("message") + '\0'));
    EXPECT_FALSE(key->hasSigned("message", {}));
    EXPECT_FALSE(key->hasSigned("message", QByteArray(64, '\0')));
}

TEST(PublicKey, AgreesWithThePublishedTestVectors)
{
    // RFC 8032, section 7.1, tests 2 and 3.
    struct Vector {
        const char* key;
        const char* message;
        const char* signature;
    };
    const Vector vectors[] = {
        {"3d4017c3e843895a92b70aa74d1b7ebc9c982ccf2ec4968cc0cd55f12af4660c", "72",
         "92a009a9f0d4cab8720e820b5f642540a2b27b5416503f8fb3762223ebdb69da085ac1e43e15996e458f3613d0f11d8c387"
         "b2eae"
         "b4302aeeb00d291612bb0c00"},
        {"fc51cd8e6218a1a38da47ed00230f0580816ed13ba3303ac5deb911548908025", "af82",
         "6291d657deec24024827e69c3abe01a30ce548a284743a445e3680d7db5ac3ac18ff9b538d16f290ae67f760984dc6594a7"
         "c15e9"
         "716ed28dc027beceea1ec40a"},
    };
    for (const Vector& vector : vectors) {
        const auto key = PublicKey::fromBase64(QByteArray::fromHex(vector.key).toBase64());
        ASSERT_TRUE(key);
        EXPECT_TRUE(
            key->hasSigned(QByteArray::fromHex(vector.message), QByteArray::fromHex(vector.signature)));
    }
}

TEST(PublicKey, IsNothingElseThanAKey)
{
    const QByteArray good = Signer().publicKey();
    const QByteArray wrong[] = {"",
                                "key",
                                good.chopped(1),
                                good + "AAAA",
                                "!" + good.mid(1),
                                good + '\n',
                                QByteArray(32, '\0').toBase64(),
                                QByteArray(32, '\xff').toBase64(),
                                good.chopped(4)};
    for (const QByteArray& text : wrong)
        EXPECT_FALSE(PublicKey::fromBase64(text)) << text.constData();
}

TEST(UpdateConfiguration, NeedsAnAddressAndAKey)
{
    RecordingLog log;
    const auto configuration = UpdateConfiguration::parse(goodFeed, Signer().publicKey(), log);
    ASSERT_TRUE(configuration);
    EXPECT_EQ(configuration->feed, QUrl(goodFeed));
    EXPECT_TRUE(log.lines().empty());
}

TEST(UpdateConfiguration, WithoutAnythingUpdatesAreQuietlyDisabled)
{
    RecordingLog log;
    EXPECT_FALSE(UpdateConfiguration::parse(QString(), QByteArray(), log));
    EXPECT_TRUE(log.lines().empty());
}

TEST(UpdateConfiguration, AWrongAddressIsLogged)
{
    for (const char* feed :
         {"", "http://updates.example/feed", "ftp://updates.example/", "updates.example", "https:"}) {
        RecordingLog log;
        EXPECT_FALSE(UpdateConfiguration::parse(QString::fromUtf8(feed), Signer().publicKey(), log)) << feed;
        EXPECT_TRUE(log.contains(QStringLiteral("updates are disabled: the feed's address")));
    }
}

TEST(UpdateConfiguration, AWrongKeyIsLogged)
{
    for (const char* key : {"", "key", "AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAAA="}) {
        RecordingLog log;
        EXPECT_FALSE(UpdateConfiguration::parse(goodFeed, key, log)) << key;
        EXPECT_TRUE(log.contains(QStringLiteral("is no Ed25519 key")));
    }
}

} // namespace
} // namespace corvandi
