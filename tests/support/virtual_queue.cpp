#include "support/virtual_queue.h"

#include <algorithm>
#include <optional>

namespace corvandi::testing {

using Key = std::pair<MainQueue::Duration, uint64_t>;

struct Entry {
    std::function<void()> work;
    std::optional<MainQueue::Duration> interval;
    bool isTimer;
};

struct VirtualQueue::Agenda {
    std::mutex mutex;
    std::map<Key, Entry> entries;
    uint64_t nextOrder = 0;

    Key add(MainQueue::Duration due, Entry entry)
    {
        const std::lock_guard guard(mutex);
        const Key key{due, nextOrder++};
        entries.emplace(key, std::move(entry));
        return key;
    }

    /// Takes the first entry that is due at `end` or before; none when there is no such entry.
    std::optional<std::pair<Key, Entry>> takeDue(MainQueue::Duration end)
    {
        const std::lock_guard guard(mutex);
        if (entries.empty() || entries.begin()->first.first > end)
            return std::nullopt;
        auto node = entries.extract(entries.begin());
        return std::pair(node.key(), std::move(node.mapped()));
    }
};

class VirtualQueue::VirtualTimer : public Timer {
public:
    VirtualTimer(std::shared_ptr<Agenda> agenda, MainQueue::Duration first,
                 std::optional<MainQueue::Duration> interval, std::function<void()> work)
        : agenda_(std::move(agenda))
        , interval_(interval)
        , work_(std::make_shared<std::function<void()>>(std::move(work)))
        , alive_(std::make_shared<bool>(true))
    {
        schedule(agenda_, first, interval_, work_, alive_);
    }
    ~VirtualTimer() override
    {
        *alive_ = false;
        const std::lock_guard guard(agenda_->mutex);
        std::erase_if(agenda_->entries, [this](const auto& item) {
            const auto* tag = item.second.work.template target<Firing>();
            return tag && tag->alive == alive_;
        });
    }

private:
    struct Firing {
        std::shared_ptr<Agenda> agenda;
        MainQueue::Duration due;
        std::optional<MainQueue::Duration> interval;
        std::shared_ptr<std::function<void()>> work;
        std::shared_ptr<bool> alive;
        void operator()() const
        {
            const Firing held = *this;
            if (held.interval)
                schedule(held.agenda, held.due + *held.interval, held.interval, held.work, held.alive);
            (*held.work)();
        }
    };

    static void schedule(const std::shared_ptr<Agenda>& agenda, MainQueue::Duration due,
                         std::optional<MainQueue::Duration> interval,
                         const std::shared_ptr<std::function<void()>>& work,
                         const std::shared_ptr<bool>& alive)
    {
        agenda->add(due, Entry{Firing{agenda, due, interval, work, alive}, interval, true});
    }

    std::shared_ptr<Agenda> agenda_;
    std::optional<MainQueue::Duration> interval_;
    std::shared_ptr<std::function<void()>> work_;
    std::shared_ptr<bool> alive_;
};

VirtualQueue::VirtualQueue()
    : agenda_(std::make_shared<Agenda>())
{
}

VirtualQueue::~VirtualQueue()
{
    // Entries hold the agenda; let go of them so that it goes too.
    std::map<Key, Entry> entries;
    const std::lock_guard guard(agenda_->mutex);
    entries.swap(agenda_->entries);
}

void VirtualQueue::async(std::function<void()> work)
{
    // Work from another thread may arrive while time advances; it is due at once whatever the time.
    agenda_->add(Duration::min(), Entry{std::move(work), std::nullopt, false});
}

std::unique_ptr<Timer> VirtualQueue::after(Duration delay, std::function<void()> work)
{
    return std::make_unique<VirtualTimer>(agenda_, now_ + std::max(delay, Duration::zero()), std::nullopt,
                                          std::move(work));
}

std::unique_ptr<Timer> VirtualQueue::every(Duration interval, std::function<void()> work)
{
    return std::make_unique<VirtualTimer>(agenda_, now_ + interval, interval, std::move(work));
}

void VirtualQueue::advance(Duration time)
{
    const Duration end = now_ + time;
    while (auto due = agenda_->takeDue(end)) {
        now_ = std::max(now_, due->first.first);
        due->second.work();
    }
    now_ = std::max(now_, end);
}

size_t VirtualQueue::timerCount() const
{
    const std::lock_guard guard(agenda_->mutex);
    return static_cast<size_t>(std::count_if(agenda_->entries.begin(), agenda_->entries.end(),
                                             [](const auto& item) { return item.second.isTimer; }));
}

} // namespace corvandi::testing
