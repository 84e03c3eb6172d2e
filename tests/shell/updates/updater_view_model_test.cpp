#include "shell/updates/updater_view_model.h"

#include <gtest/gtest.h>

namespace corvandi {
namespace {

class FakeUpdater : public Updater {
public:
    void start() override
    {
        ++starts;
        can = true;
    }
    [[nodiscard]] bool canCheckForUpdates() const override { return can; }
    [[nodiscard]] std::unique_ptr<Registration>
    observeCanCheckForUpdates(std::function<void(bool)> observer) override
    {
        observer(can);
        observer_ = std::move(observer);
        return std::make_unique<Observation>(*this);
    }
    void checkForUpdates() override { ++checks; }
    void set(bool value) { observer_(can = value); }
    [[nodiscard]] bool isObserved() const { return bool(observer_); }

    bool can = false;
    int starts = 0;
    int checks = 0;

private:
    struct Observation : Registration {
        explicit Observation(FakeUpdater& theUpdater)
            : updater(theUpdater)
        {
        }
        ~Observation() override { updater.observer_ = {}; }
        FakeUpdater& updater;
    };
    std::function<void(bool)> observer_;
};

TEST(UpdaterViewModel, StartsTheUpdaterAndTakesItsInitialValue)
{
    FakeUpdater updater;
    const UpdaterViewModel model(updater);
    EXPECT_EQ(updater.starts, 1);
    EXPECT_TRUE(model.canCheckForUpdates());
}

TEST(UpdaterViewModel, MirrorsEachNewValue)
{
    FakeUpdater updater;
    const UpdaterViewModel model(updater);
    std::vector<bool> seen;
    QObject::connect(&model, &UpdaterViewModel::canCheckForUpdatesChanged, &model,
                     [&] { seen.push_back(model.canCheckForUpdates()); });
    updater.set(false);
    updater.set(false);
    updater.set(true);
    EXPECT_EQ(seen, (std::vector<bool>{false, true}));
}

TEST(UpdaterViewModel, TheCheckActionChecks)
{
    FakeUpdater updater;
    UpdaterViewModel model(updater);
    EXPECT_EQ(updater.checks, 0);
    model.checkForUpdates();
    EXPECT_EQ(updater.checks, 1);
}

TEST(UpdaterViewModel, StopsObservingWhenItGoes)
{
    FakeUpdater updater;
    {
        const UpdaterViewModel model(updater);
        EXPECT_TRUE(updater.isObserved());
    }
    EXPECT_FALSE(updater.isObserved());
}

} // namespace
} // namespace corvandi
