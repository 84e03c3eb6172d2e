#include "platform/linux/language_model/model_list.h"

#include "base/error.h"
#include "base/json_reading.h"

#include <algorithm>

namespace corvandi {
namespace {

QString idOf(const Json& model)
{
    return stringMember(model, "id");
}

/// Servers list their models for search beside those that converse, some of them first.
bool isForConversation(const QString& model)
{
    return !model.contains(QLatin1String("embed"), Qt::CaseInsensitive) &&
           !model.contains(QLatin1String("rerank"), Qt::CaseInsensitive);
}

} // namespace

std::optional<std::vector<QString>> readModelList(const QByteArray& json)
{
    try {
        return readEach(arrayMember(parseJson(json), "data"), idOf);
    } catch (const Error&) {
        return std::nullopt;
    }
}

std::optional<QString> chooseModel(const std::vector<QString>& models, const QString& wanted)
{
    const auto suits = [&wanted](const QString& model) {
        if (wanted.isEmpty())
            return isForConversation(model);
        return model == wanted || model == wanted + QLatin1String(":latest");
    };
    const auto found = std::ranges::find_if(models, suits);
    return found == models.end() ? std::nullopt : std::optional(*found);
}

} // namespace corvandi
