#include "storage/insertion_method.h"

namespace corvandi {

QString rawValue(InsertionMethod method)
{
    switch (method) {
    case InsertionMethod::type:
        return QStringLiteral("type");
    case InsertionMethod::paste:
        return QStringLiteral("paste");
    }
    return {};
}

std::optional<InsertionMethod> insertionMethod(const QString& raw)
{
    for (const InsertionMethod method : allInsertionMethods) {
        if (rawValue(method) == raw)
            return method;
    }
    return std::nullopt;
}

} // namespace corvandi
