#include "system/updates/signed_feed.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

TEST(SignedFeed, TheFirstLineHoldsTheSignatureOfTheRest)
{
    const QByteArray signature(64, 's');
    const auto split = SignedFeed::split("corvandi-update-1 " + signature.toBase64() + "\n{\n}\n");

    ASSERT_TRUE(split);
    EXPECT_EQ(split->signature, signature);
    EXPECT_EQ(split->manifest, QByteArray("{\n}\n"));
    EXPECT_EQ(split->signedText(), QByteArray("corvandi-update-1\n{\n}\n"));
}

TEST(SignedFeed, AnotherFirstLineIsNoFeed)
{
    const QByteArray signature = QByteArray(64, 's').toBase64();
    const QByteArray wrong[] = {
        "",
        "\n",
        "{}",
        "<html>\n</html>",
        "corvandi-update-1 " + signature,
        "corvandi-update-1\n{}",
        "corvandi-update-1 \n{}",
        "corvandi-update-2 " + signature + "\n{}",
        "corvandi-update-1 " + QByteArray(63, 's').toBase64() + "\n{}",
        "corvandi-update-1 " + QByteArray(65, 's').toBase64() + "\n{}",
        "corvandi-update-1 " + signature.chopped(3) + "!!!\n{}",
        "corvandi-update-1 " + signature.chopped(2) + "\n{}",
        "corvandi-update-1 " + signature + " \n{}",
        "corvandi-update-1 " + signature + "\r\n{}",
        " corvandi-update-1 " + signature + "\n{}",
    };
    for (const QByteArray& feed : wrong)
        EXPECT_FALSE(SignedFeed::split(feed)) << feed.constData();
}

} // namespace
} // namespace corvandi
