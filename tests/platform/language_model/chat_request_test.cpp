#include "platform/linux/language_model/chat_request.h"

#include <nlohmann/json.hpp>

#include <gtest/gtest.h>

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

} // namespace
} // namespace corvandi
