#include "platform/linux/language_model/server_address.h"

#include <gmock/gmock.h>

namespace corvandi {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<QString> addressesOf(const char* text)
{
    std::vector<QString> addresses;
    for (const QUrl& url : serverAddresses(QString::fromUtf8(text)))
        addresses.push_back(url.toString());
    return addresses;
}

TEST(ServerAddressTest, AddressesOfThisMachineAreTaken)
{
    EXPECT_THAT(addressesOf("http://127.0.0.1:11434"), ElementsAre(QStringLiteral("http://127.0.0.1:11434")));
    EXPECT_THAT(addressesOf("http://127.3.2.1:80"), ElementsAre(QStringLiteral("http://127.3.2.1:80")));
    EXPECT_THAT(addressesOf("http://[::1]:8080"), ElementsAre(QStringLiteral("http://[::1]:8080")));
    EXPECT_THAT(addressesOf("127.0.0.1:8080"), ElementsAre(QStringLiteral("http://127.0.0.1:8080")));
    EXPECT_THAT(addressesOf(" http://127.0.0.1 "), ElementsAre(QStringLiteral("http://127.0.0.1")));
}

TEST(ServerAddressTest, LocalhostIsThisMachineByNumber)
{
    EXPECT_THAT(addressesOf("http://LocalHost:1234"),
                ElementsAre(QStringLiteral("http://127.0.0.1:1234"), QStringLiteral("http://[::1]:1234")));
    EXPECT_THAT(addressesOf("localhost:1234"),
                ElementsAre(QStringLiteral("http://127.0.0.1:1234"), QStringLiteral("http://[::1]:1234")));
}

TEST(ServerAddressTest, AnythingElseIsRefused)
{
    for (const char* text : {"",
                             "http://",
                             "example.com",
                             "http://example.com",
                             "http://10.0.0.1:11434",
                             "http://0.0.0.0:11434",
                             "http://[::]:8080",
                             "http://[::ffff:127.0.0.1]:80",
                             "http://128.0.0.1",
                             "http://localhost.:80",
                             "http://127.0.0.1.example.com",
                             "http://localhost.example.com",
                             "https://127.0.0.1:8080",
                             "ftp://127.0.0.1",
                             "file:///etc/passwd",
                             "http://me@127.0.0.1",
                             "http://127.0.0.1@example.com",
                             "http://127.0.0.1:99999",
                             "http://127.0.0.1?to=example.com",
                             "http://127.0.0.1#there",
                             "http://127.0.0.1:80 example.com",
                             "http://127.0.0.1\\@example.com"})
        EXPECT_THAT(addressesOf(text), IsEmpty()) << text;
}

TEST(ServerAddressTest, WhatPeopleCopyAlongIsDropped)
{
    for (const char* text : {"http://127.0.0.1:80/", "http://127.0.0.1:80/v1", "http://127.0.0.1:80/v1/"})
        EXPECT_THAT(addressesOf(text), ElementsAre(QStringLiteral("http://127.0.0.1:80"))) << text;
    EXPECT_THAT(addressesOf("http://127.0.0.1:80/llm/v1"),
                ElementsAre(QStringLiteral("http://127.0.0.1:80/llm")));
}

TEST(ServerAddressTest, TheProtocolLiesBehindTheServersPath)
{
    EXPECT_EQ(protocolAddress(serverAddress(11434), QStringLiteral("models")),
              QUrl(QStringLiteral("http://127.0.0.1:11434/v1/models")));
    EXPECT_EQ(
        protocolAddress(QUrl(QStringLiteral("http://127.0.0.1/llm")), QStringLiteral("chat/completions")),
        QUrl(QStringLiteral("http://127.0.0.1/llm/v1/chat/completions")));
}

} // namespace
} // namespace corvandi
