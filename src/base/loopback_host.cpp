#include "base/loopback_host.h"

#include <QStringList>

#include <algorithm>

namespace corvandi {
namespace {

bool isOctet(const QString& text)
{
    const auto isDigit = [](QChar character) { return character >= u'0' && character <= u'9'; };
    return !text.isEmpty() && text.size() <= 3 && std::all_of(text.begin(), text.end(), isDigit) &&
           text.toUInt() <= 255;
}

bool isLoopbackAddress(const QString& host)
{
    const QStringList octets = host.split(u'.');
    return octets.size() == 4 && octets.front() == QLatin1String("127") &&
           std::all_of(octets.begin(), octets.end(), isOctet);
}

} // namespace

bool isLoopbackHost(const QString& host)
{
    return host == QLatin1String("localhost") || host == QLatin1String("::1") || isLoopbackAddress(host);
}

} // namespace corvandi
