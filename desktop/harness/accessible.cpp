#include "harness/accessible.h"

#include <QDBusArgument>
#include <QDBusObjectPath>

#include <algorithm>
#include <thread>

namespace corvandi::harness {
namespace {

constexpr const char* accessibleInterface = "org.a11y.atspi.Accessible";
constexpr const char* actionInterface = "org.a11y.atspi.Action";
constexpr const char* componentInterface = "org.a11y.atspi.Component";
constexpr const char* textInterface = "org.a11y.atspi.Text";

/// Tells what an element is called by.
constexpr unsigned labelledBy = 2;

struct Reference {
    QString service;
    QString path;
};

Reference referenceFrom(const QDBusArgument& argument)
{
    Reference reference;
    QDBusObjectPath path;
    argument.beginStructure();
    argument >> reference.service >> path;
    argument.endStructure();
    reference.path = path.path();
    return reference;
}

std::vector<Reference> referencesFrom(const QDBusArgument& argument)
{
    std::vector<Reference> references;
    argument.beginArray();
    while (!argument.atEnd())
        references.push_back(referenceFrom(argument));
    argument.endArray();
    return references;
}

template<class Result>
Result orElse(const std::function<Result()>& question, Result otherwise)
{
    try {
        return question();
    } catch (const HarnessError&) {
        return otherwise;
    }
}

} // namespace

bool waitUntil(const std::function<bool()>& condition, Clock::time_point deadline)
{
    constexpr std::chrono::milliseconds interval{30};
    while (!orElse<bool>(condition, false)) {
        if (Clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(interval);
    }
    return true;
}

Accessible::Accessible(std::shared_ptr<BusConnection> bus, QString service, QString path)
    : bus_(std::move(bus))
    , service_(std::move(service))
    , path_(std::move(path))
{
}

Accessible Accessible::application(const std::shared_ptr<BusConnection>& bus, pid_t process)
{
    const Accessible registry(bus, QStringLiteral("org.a11y.atspi.Registry"),
                              QStringLiteral("/org/a11y/atspi/accessible/root"));
    std::optional<Accessible> found;
    const bool isThere = waitUntil([&] {
        for (const Accessible& application : registry.children()) {
            if (orElse<pid_t>([&] { return bus->processOf(application.service_); }, 0) == process)
                found = application;
        }
        return found.has_value();
    });
    if (!isThere)
        throw HarnessError("process " + std::to_string(process) + " is not on the accessibility bus");
    return *found;
}

BusConnection::Target Accessible::as(const char* interface) const
{
    return {service_, path_, QLatin1String(interface)};
}

std::string Accessible::role() const
{
    return bus_->call(as(accessibleInterface), QStringLiteral("GetRoleName"))
        .value(0)
        .toString()
        .toStdString();
}

std::string Accessible::name() const
{
    return bus_->property(as(accessibleInterface), QStringLiteral("Name")).toString().toStdString();
}

std::string Accessible::description() const
{
    return bus_->property(as(accessibleInterface), QStringLiteral("Description")).toString().toStdString();
}

std::string Accessible::label() const
{
    const QVariantList answer = bus_->call(as(accessibleInterface), QStringLiteral("GetRelationSet"));
    const auto relations = answer.value(0).value<QDBusArgument>();
    std::string label;
    relations.beginArray();
    while (!relations.atEnd()) {
        unsigned kind = 0;
        relations.beginStructure();
        relations >> kind;
        const std::vector<Reference> related = referencesFrom(relations);
        relations.endStructure();
        if (kind == labelledBy && !related.empty())
            label = Accessible(bus_, related.front().service, related.front().path).name();
    }
    relations.endArray();
    return label;
}

bool Accessible::is(State state) const
{
    constexpr int bitsPerWord = 32;
    const QVariantList answer = bus_->call(as(accessibleInterface), QStringLiteral("GetState"));
    QList<uint> words;
    answer.value(0).value<QDBusArgument>() >> words;
    const auto number = static_cast<int>(state);
    return (words.value(number / bitsPerWord) >> (number % bitsPerWord) & 1U) != 0;
}

std::string Accessible::text() const
{
    constexpr int toTheEnd = -1;
    return bus_->call(as(textInterface), QStringLiteral("GetText"), {0, toTheEnd})
        .value(0)
        .toString()
        .toStdString();
}

Area Accessible::area() const
{
    constexpr uint onTheScreen = 0;
    const QVariantList answer =
        bus_->call(as(componentInterface), QStringLiteral("GetExtents"), {onTheScreen});
    const auto argument = answer.value(0).value<QDBusArgument>();
    Area area;
    argument.beginStructure();
    argument >> area.x >> area.y >> area.width >> area.height;
    argument.endStructure();
    return area;
}

std::vector<std::string> Accessible::interfaces() const
{
    std::vector<std::string> names;
    const QVariantList answer = bus_->call(as(accessibleInterface), QStringLiteral("GetInterfaces"));
    for (const QString& name : answer.value(0).toStringList())
        names.push_back(name.toStdString());
    return names;
}

std::vector<std::string> Accessible::actions() const
{
    const std::vector<std::string> offered = interfaces();
    std::vector<std::string> names;
    if (std::find(offered.begin(), offered.end(), actionInterface) == offered.end())
        return names;
    const QVariantList answer = bus_->call(as(actionInterface), QStringLiteral("GetActions"));
    const auto argument = answer.value(0).value<QDBusArgument>();
    argument.beginArray();
    while (!argument.atEnd()) {
        QString name;
        QString description;
        QString key;
        argument.beginStructure();
        argument >> name >> description >> key;
        argument.endStructure();
        names.push_back(name.toStdString());
    }
    argument.endArray();
    return names;
}

void Accessible::act() const
{
    bus_->call(as(actionInterface), QStringLiteral("DoAction"), {0});
}

std::vector<Accessible> Accessible::children() const
{
    const QVariantList answer = bus_->call(as(accessibleInterface), QStringLiteral("GetChildren"));
    std::vector<Accessible> children;
    for (const Reference& child : referencesFrom(answer.value(0).value<QDBusArgument>()))
        children.push_back(Accessible(bus_, child.service, child.path));
    return children;
}

Accessible Accessible::parent() const
{
    const QVariant answer = bus_->property(as(accessibleInterface), QStringLiteral("Parent"));
    const Reference reference = referenceFrom(answer.value<QDBusArgument>());
    return {bus_, reference.service, reference.path};
}

Accessible Accessible::window() const
{
    const Accessible above = parent();
    return above.role() == "application" ? *this : above.window();
}

bool Accessible::isShown() const
{
    return is(State::showing) || is(State::visible);
}

void Accessible::walk(const std::function<void(const Accessible&)>& visit) const
{
    const std::vector<Accessible> below =
        orElse<std::vector<Accessible>>([this] { return children(); }, std::vector<Accessible>());
    visit(*this);
    for (const Accessible& child : below) {
        if (orElse<bool>([&] { return child.isShown(); }, false))
            child.walk(visit);
    }
}

bool Accessible::fits(const Sought& sought) const
{
    if (!sought.role.empty() && role() != sought.role)
        return false;
    if (sought.name.empty())
        return true;
    const std::string own = name();
    return sought.match == Sought::Match::beginning ? own.starts_with(sought.name) : own == sought.name;
}

std::vector<Accessible> Accessible::findAll(const Sought& sought) const
{
    std::vector<Accessible> found;
    walk([&](const Accessible& element) {
        if (orElse<bool>([&] { return element.fits(sought); }, false))
            found.push_back(element);
    });
    return found;
}

std::optional<Accessible> Accessible::find(const Sought& sought) const
{
    const std::vector<Accessible> found = findAll(sought);
    return found.empty() ? std::nullopt : std::optional(found.front());
}

Accessible Accessible::waitFor(const Sought& sought, Clock::time_point deadline) const
{
    std::optional<Accessible> found;
    if (!waitUntil([&] { return (found = find(sought)).has_value(); }, deadline))
        throw HarnessError("there is no " + sought.role + " \"" + sought.name + "\" but only:\n" + outline());
    return *found;
}

bool Accessible::waitUntilGone(const Sought& sought, Clock::time_point deadline) const
{
    return waitUntil([&] { return !find(sought); }, deadline);
}

std::string Accessible::outline() const
{
    std::string lines;
    walk([&](const Accessible& element) {
        const auto line = [&] {
            return element.role() + " \"" + element.name() + '"' +
                   (element.is(State::focusable) ? " focusable" : "") +
                   (element.is(State::focused) ? " focused" : "") +
                   (element.is(State::checked) ? " checked" : "") +
                   (element.is(State::enabled) ? "" : " disabled") + '\n';
        };
        lines += orElse<std::string>(line, "(gone)\n");
    });
    return lines;
}

} // namespace corvandi::harness
