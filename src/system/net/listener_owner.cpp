#include "system/net/listener_owner.h"

#include <QFile>
#include <QList>

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

namespace corvandi {
namespace {

QByteArray contentOf(const char* path)
{
    QFile file(QString::fromLatin1(path));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// As the kernel prints it: each four bytes as a number of this machine.
template<size_t size>
QByteArray printed(const std::array<uint8_t, size>& address, quint16 port)
{
    QByteArray text;
    for (size_t i = 0; i < size; i += sizeof(uint32_t)) {
        uint32_t word = 0;
        std::memcpy(&word, address.data() + i, sizeof word);
        text += QByteArray::number(word, 16).rightJustified(8, '0');
    }
    return (text + ':' + QByteArray::number(port, 16).rightJustified(4, '0')).toUpper();
}

QByteArray printedV4(quint32 address, quint16 port)
{
    return printed(std::array{static_cast<uint8_t>(address >> 24), static_cast<uint8_t>(address >> 16),
                              static_cast<uint8_t>(address >> 8), static_cast<uint8_t>(address)},
                   port);
}

QByteArray printedV6(const QHostAddress& address, quint16 port)
{
    std::array<uint8_t, 16> bytes{};
    const Q_IPV6ADDR given = address.toIPv6Address();
    std::copy(std::begin(given.c), std::end(given.c), bytes.begin());
    return printed(bytes, port);
}

/// The users who listen at one of these places.
std::vector<uid_t> listeners(const QByteArray& table, const QList<QByteArray>& places)
{
    constexpr qsizetype localAddress = 1;
    constexpr qsizetype state = 3;
    constexpr qsizetype user = 7;
    const QByteArray listening("0A");
    std::vector<uid_t> users;
    for (const QByteArray& line : table.split('\n')) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() > user && fields[state] == listening && places.contains(fields[localAddress]))
            users.push_back(fields[user].toUInt());
    }
    return users;
}

/// Not of a person: 1000 is the first number for those. The services to which systemd gives a number while
/// they run have one of the second range.
bool isSystems(uid_t user)
{
    return user < 1000 || (user >= 61184 && user <= 65519);
}

} // namespace

SocketTables SocketTables::ofThisMachine()
{
    return {contentOf("/proc/net/tcp"), contentOf("/proc/net/tcp6")};
}

ListenerOwner SocketTables::ownerOf(const QHostAddress& address, quint16 port) const
{
    std::vector<uid_t> users;
    if (address.protocol() == QAbstractSocket::IPv4Protocol)
        users = listeners(ipv4, {printedV4(address.toIPv4Address(), port), printedV4(0, port)});
    // A socket of the newer family may take calls of the older one.
    if (users.empty())
        users = listeners(ipv6, {printedV6(address, port), printedV6(QHostAddress::AnyIPv6, port)});
    if (users.empty())
        return ListenerOwner::nobody;
    const auto isTrusted = [](uid_t user) { return user == geteuid() || isSystems(user); };
    return std::ranges::all_of(users, isTrusted) ? ListenerOwner::userOrSystem : ListenerOwner::somebodyElse;
}

} // namespace corvandi
