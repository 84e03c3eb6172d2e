#include "platform/linux/language_model/chat_request.h"

#include "base/json_reading.h"

namespace corvandi {

QByteArray chatRequest(const QString& model, const QString& instructions, const QString& prompt)
{
    const auto message = [](const char* role, const QString& content) {
        return Json{{"role", role}, {"content", content.toStdString()}};
    };
    const Json request{
        {"model", model.toStdString()},
        {"messages", Json::array({message("system", instructions), message("user", prompt)})},
        {"stream", true},
    };
    return QByteArray::fromStdString(request.dump());
}

} // namespace corvandi
