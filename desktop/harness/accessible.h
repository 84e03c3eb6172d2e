#pragma once

#include "harness/area.h"
#include "harness/bus_connection.h"
#include "harness/waiting.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace corvandi::harness {

/// An element of another program's user interface, as programs that read the screen to people meet it: a
/// window, a button, a text. It is a reference: what is asked for is asked for anew each time, and fails
/// with a HarnessError once the element has gone.
class Accessible {
public:
    /// Numbered as the accessibility bus numbers them.
    enum class State {
        active = 1,
        checked = 4,
        editable = 7,
        enabled = 8,
        focusable = 11,
        focused = 12,
        selected = 23,
        sensitive = 24,
        showing = 25,
        visible = 30,
    };
    /// What to look for among the elements that are shown. Roles are the bus's names of them, such as
    /// "push button", "check box", "text", "label", "list item", "frame", "dialog".
    struct Sought {
        std::string role;
        /// The whole name, or the beginning of it. One that says neither fits all.
        std::string name = {};
        enum class Match { whole, beginning } match = Match::whole;
    };
    /// The root of that process's elements: its children are its windows. Waits until it is on the bus.
    /// Throws HarnessError when it does not come.
    [[nodiscard]] static Accessible application(const std::shared_ptr<BusConnection>& bus, pid_t process);

    [[nodiscard]] std::string role() const;
    [[nodiscard]] std::string name() const;
    [[nodiscard]] std::string description() const;
    /// The name of the element that labels this one; empty if none does.
    [[nodiscard]] std::string label() const;
    [[nodiscard]] bool is(State state) const;
    /// The contents of a text element.
    [[nodiscard]] std::string text() const;
    [[nodiscard]] Area area() const;
    [[nodiscard]] std::vector<std::string> interfaces() const;
    /// The names of what can be done with it.
    [[nodiscard]] std::vector<std::string> actions() const;
    /// Does the first of its actions.
    void act() const;
    [[nodiscard]] std::vector<Accessible> children() const;
    [[nodiscard]] Accessible parent() const;
    /// The window that it is in; itself if it is one.
    [[nodiscard]] Accessible window() const;
    /// The same element?
    [[nodiscard]] bool operator==(const Accessible& other) const
    {
        return service_ == other.service_ && path_ == other.path_;
    }

    /// Visits this element and all shown ones below it, top to bottom. Elements that go in the meantime are
    /// left out.
    void walk(const std::function<void(const Accessible&)>& visit) const;
    [[nodiscard]] std::vector<Accessible> findAll(const Sought& sought) const;
    [[nodiscard]] std::optional<Accessible> find(const Sought& sought) const;
    /// Waits until there is one. Throws HarnessError, with what there is instead, when none comes.
    Accessible waitFor(const Sought& sought, Clock::time_point deadline = Clock::now() + patience) const;
    /// Waits until there is none; false when `deadline` passes first.
    [[nodiscard]] bool waitUntilGone(const Sought& sought,
                                     Clock::time_point deadline = Clock::now() + patience) const;
    /// One line per shown element: role, name, states.
    [[nodiscard]] std::string outline() const;

private:
    Accessible(std::shared_ptr<BusConnection> bus, QString service, QString path);

    [[nodiscard]] BusConnection::Target as(const char* interface) const;
    [[nodiscard]] bool isShown() const;
    [[nodiscard]] bool fits(const Sought& sought) const;

    std::shared_ptr<BusConnection> bus_;
    QString service_;
    QString path_;
};

/// Waits until `condition` holds, asking again and again; false when `deadline` passes first. An element
/// that has gone while it was asked counts as no.
[[nodiscard]] bool waitUntil(const std::function<bool()>& condition,
                             Clock::time_point deadline = Clock::now() + patience);

} // namespace corvandi::harness
