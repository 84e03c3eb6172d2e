#pragma once

#include "support/event_loop.h"
#include "support/fake_user_defaults.h"
#include "support/http_server.h"
#include "support/recording_log.h"
#include "system/language_model/chat_server_model.h"
#include "system/process/qt_main_queue.h"

#include <gmock/gmock.h>

#include <optional>

namespace corvandi::testing {

using namespace std::chrono_literals;

/// The event loop, on whose clock time can be let pass.
class HurriedQueue : public QtMainQueue {
public:
    Duration ahead{};
    [[nodiscard]] Duration now() const override { return QtMainQueue::now() + ahead; }
};

/// A model behind a server of the test's, on a machine with enough memory and nothing installed.
class ChatServerTest : public ::testing::Test {
protected:
    static constexpr quint64 gibibyte = quint64{1} << 30;
    inline static const QString modelsPath = QStringLiteral("/v1/models");
    inline static const QString chatPath = QStringLiteral("/v1/chat/completions");

    /// The model, which asks the server unless another machine was set.
    ChatServerModel& model()
    {
        if (!model_)
            model_.emplace(queue, defaults, log, machine);
        return *model_;
    }

    void listModels(HttpServer& of, const QByteArray& names = R"({"id":"small"})")
    {
        of.serve(modelsPath, R"({"object":"list","data":[)" + names + "]}");
    }
    void set(const char* key, const QString& value) { defaults.set(QString::fromLatin1(key), value); }
    [[nodiscard]] QString address(const HttpServer& of) const { return of.url(QString()).toString(); }

    /// What is known after a look at the model.
    LanguageModelAvailability look()
    {
        bool isDone = false;
        const auto registration = model().refreshAvailability([&] { isDone = true; });
        EXPECT_FALSE(isDone) << "told within the call";
        EXPECT_TRUE(waitUntil([&] { return isDone; }, 2s)) << "not told within two seconds";
        return model().availability();
    }
    /// Like `look`, when all that is known is too old.
    LanguageModelAvailability lookLater()
    {
        queue.ahead += 2001ms;
        return look();
    }
    [[nodiscard]] LanguageModelAnswer ask(const QString& prompt = QStringLiteral("hello"))
    {
        std::optional<LanguageModelAnswer> answer;
        const auto session = model().makeSession(QStringLiteral("Be brief."));
        session->respond(prompt, [&](LanguageModelAnswer given) { answer = std::move(given); });
        EXPECT_FALSE(answer) << "answered within the call";
        EXPECT_TRUE(waitUntil([&] { return answer.has_value(); }, 20s));
        return answer.value_or(LanguageModelFailure{});
    }
    [[nodiscard]] QString failure()
    {
        const LanguageModelAnswer answer = ask();
        const auto* why = std::get_if<LanguageModelFailure>(&answer);
        return why ? why->description : QStringLiteral("no failure");
    }

    HurriedQueue queue;
    FakeUserDefaults defaults;
    RecordingLog log;
    HttpServer server;
    ChatServerModel::Machine machine{{server.url(QString())}, {}, 8 * gibibyte};

private:
    std::optional<ChatServerModel> model_;
};

} // namespace corvandi::testing
