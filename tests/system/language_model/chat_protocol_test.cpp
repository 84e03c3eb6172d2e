#include "system/language_model/chat_exchange.h"
#include "system/language_model/known_servers.h"
#include "system/language_model/server_search.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace corvandi {
namespace {

TEST(ChatRequestTest, HoldsInstructionsAndPromptAndNoOptions)
{
    const QByteArray body =
        chatRequest(QStringLiteral("m:1b"), QStringLiteral("Do \"this\"."), QString::fromUtf8("  grüß\n"));
    EXPECT_EQ(nlohmann::json::parse(body.toStdString()), nlohmann::json::parse(R"({
        "model": "m:1b",
        "messages": [
            {"role": "system", "content": "Do \"this\"."},
            {"role": "user", "content": "  grüß\n"}
        ],
        "stream": true
    })"));
}

TEST(ChatRequestTest, HalfACharacterIsNoObstacle)
{
    const QByteArray body = chatRequest(QStringLiteral("m"), QString(), QString(QChar(0xD83D)));
    EXPECT_TRUE(nlohmann::json::accept(body.toStdString()));
}

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Optional;

const QString any;
const QString small = QStringLiteral("small:1b");
const QString large = QStringLiteral("large:latest");
const QString search = QStringLiteral("text-Embedding-small");

TEST(ModelListTest, NamesAreReadInTheirOrder)
{
    EXPECT_THAT(readModelList(R"({"object":"list","data":[{"id":"b","object":"model"},{"id":"a"}]})"),
                Optional(ElementsAre(QStringLiteral("b"), QStringLiteral("a"))));
}

TEST(ModelListTest, AnEmptyListIsOne)
{
    EXPECT_THAT(readModelList(R"({"data":[]})"), Optional(IsEmpty()));
}

TEST(ModelListTest, OtherDocumentsAreNone)
{
    for (const char* json :
         {"", "[]", "{}", "<html>", R"({"data":null})", R"({"data":{}})", R"({"data":[{"name":"a"}]})",
          R"({"data":["a"]})", "{\"data\":[{\"id\":\"\xFF\"}]}"})
        EXPECT_EQ(readModelList(json), std::nullopt) << json;
}

TEST(ModelListTest, AModelThatWorksElsewhereIsNeverTakenWithoutAWish)
{
    for (const char* elsewhere : {"large:120b-cloud", "large:cloud", "Large:Cloud", "large-cloud"}) {
        const QString name = QString::fromLatin1(elsewhere);
        EXPECT_EQ(chooseModel({name, small}, any), small) << elsewhere;
        EXPECT_EQ(chooseModel({name}, any), std::nullopt) << elsewhere;
        EXPECT_EQ(chooseModel({small, name}, name), name) << "the user's own word";
    }
    EXPECT_EQ(chooseModel({QStringLiteral("cloudy:7b")}, any), QStringLiteral("cloudy:7b"));
}

TEST(ModelListTest, WithoutAWishTheFirstOneIsTaken)
{
    EXPECT_EQ(chooseModel({small, large}, any), small);
}

TEST(ModelListTest, ModelsForSearchDoNotRewrite)
{
    EXPECT_EQ(chooseModel({search, QStringLiteral("bge-reranker"), large}, any), large);
    EXPECT_EQ(chooseModel({search}, any), std::nullopt);
}

TEST(ModelListTest, ANamedModelIsTakenWhateverItIsFor)
{
    EXPECT_EQ(chooseModel({small, search}, search), search);
}

TEST(ModelListTest, TheLatestOfANameNeedNotBeSpelledOut)
{
    EXPECT_EQ(chooseModel({small, large}, QStringLiteral("large")), large);
    EXPECT_EQ(chooseModel({small, large}, QStringLiteral("small")), std::nullopt);
}

TEST(ModelListTest, ANamedModelThatIsMissingIsNotReplaced)
{
    EXPECT_EQ(chooseModel({small, large}, QStringLiteral("other")), std::nullopt);
}

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
