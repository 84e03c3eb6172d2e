#pragma once

#include "conformance/conformance.h"
#include "ports/session_lock.h"

#include <memory>
#include <vector>

namespace corvandi::testing {

/// A session that can be locked.
class SessionLockDriver : public PassingTime {
public:
    [[nodiscard]] virtual SessionLock& sessionLock() = 0;
    virtual void lock() = 0;
    virtual void unlock() = 0;
};

class SessionLockSuite : public ConformanceTest<SessionLockDriver> {
protected:
    [[nodiscard]] bool becomes(bool isLocked)
    {
        return driver.until([&] { return driver.sessionLock().isLocked() == isLocked; });
    }
};

TEST_P(SessionLockSuite, WithoutALockerItIsNotLocked)
{
    driver.settle();
    EXPECT_FALSE(driver.sessionLock().isLocked());
}

TEST_P(SessionLockSuite, ItIsLockedUntilItIsUnlocked)
{
    driver.lock();
    EXPECT_TRUE(becomes(true));
    driver.unlock();
    EXPECT_TRUE(becomes(false));
    driver.lock();
    EXPECT_TRUE(becomes(true));
}

TEST_P(SessionLockSuite, EachChangeIsToldOnce)
{
    driver.settle();
    std::vector<bool> told;
    const auto registration =
        driver.sessionLock().onChange([&] { told.push_back(driver.sessionLock().isLocked()); });
    driver.settle();
    EXPECT_TRUE(told.empty());
    driver.lock();
    EXPECT_TRUE(driver.until([&] { return told == std::vector{true}; }));
    driver.unlock();
    EXPECT_TRUE(driver.until([&] { return told == std::vector{true, false}; }));
    driver.settle();
    EXPECT_EQ(told.size(), 2U);
}

TEST_P(SessionLockSuite, EveryRegistrationIsTold)
{
    int first = 0;
    int second = 0;
    const auto one = driver.sessionLock().onChange([&] { ++first; });
    const auto other = driver.sessionLock().onChange([&] { ++second; });
    driver.lock();
    EXPECT_TRUE(driver.until([&] { return first == 1 && second == 1; }));
}

TEST_P(SessionLockSuite, ADestroyedRegistrationIsNotTold)
{
    int told = 0;
    auto registration = driver.sessionLock().onChange([&] { ++told; });
    registration.reset();
    driver.lock();
    EXPECT_TRUE(becomes(true));
    driver.settle();
    EXPECT_EQ(told, 0);
}

TEST_P(SessionLockSuite, ACallbackMayDestroyItsRegistration)
{
    int told = 0;
    std::unique_ptr<Registration> registration = driver.sessionLock().onChange([&] {
        registration.reset();
        ++told;
    });
    driver.lock();
    EXPECT_TRUE(driver.until([&] { return told == 1; }));
    driver.unlock();
    EXPECT_TRUE(becomes(false));
    driver.settle();
    EXPECT_EQ(told, 1);
}

} // namespace corvandi::testing
