#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string>

namespace corvandi::testing {

// A suite asserts what the header of a port promises, and is run over every implementation of that port:
// the adapters and the fake that the logic is tested with. What it needs of the world outside is a driver,
// an abstract class in the suite's header, of which there is one for each implementation.
//
// A suite's header defines tests: it is included in one source file of an executable, which instantiates
// it: INSTANTIATE_TEST_SUITE_P(Fake, KeyboardSuite, over<FakeKeyboardDriver>("Fake"));

/// How time passes around an implementation.
class PassingTime {
public:
    virtual ~PassingTime() = default;

    /// Lets time pass until `condition` holds; false when it does not within some seconds.
    [[nodiscard]] virtual bool until(const std::function<bool()>& condition) = 0;
    /// Lets everything arrive that is on its way: to show that something does not come.
    virtual void settle() = 0;
};

/// What a suite is run over: the name of an implementation, and how the world around it is made.
template<class Driver>
struct Implementation {
    std::string name;
    std::function<std::unique_ptr<Driver>()> makeDriver;

    friend void PrintTo(const Implementation& implementation, std::ostream* out)
    {
        *out << implementation.name;
    }
};

/// An implementation of any port, by the driver that is made for its suite.
template<class OwnDriver>
struct DrivenBy {
    std::string name;

    template<class Driver>
    operator Implementation<Driver>() const
    {
        return {name, [] { return std::make_unique<OwnDriver>(); }};
    }
};

template<class OwnDriver>
[[nodiscard]] auto over(const std::string& name)
{
    return ::testing::Values(DrivenBy<OwnDriver>{name});
}

/// Every test has a world of its own.
template<class Driver>
class ConformanceTest : public ::testing::TestWithParam<Implementation<Driver>> {
private:
    std::unique_ptr<Driver> driver_ = this->GetParam().makeDriver();

protected:
    Driver& driver = *driver_;
};

} // namespace corvandi::testing
