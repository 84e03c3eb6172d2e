#include "session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>

namespace corvandi::testing {
namespace {

using namespace harness;

std::filesystem::path makeFolder()
{
    std::string name = (std::filesystem::temp_directory_path() / "corvandi-test.XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw HarnessError("no folder for temporary files");
    return name;
}

Session::Options withSound(const Session::Options& options)
{
    Session::Options all{"audio=pulse"};
    all.insert(all.end(), options.begin(), options.end());
    return all;
}

/// Another build than the one beside the tests can be tested by naming it in the environment.
std::string programUnderTest()
{
    const char* named = std::getenv("CORVANDI_PROGRAM");
    return named != nullptr ? named : CORVANDI_PROGRAM;
}

std::string testName()
{
    const ::testing::TestInfo* test = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string(test->test_suite_name()) + '.' + test->name();
    std::replace(name.begin(), name.end(), '/', '_');
    return name;
}

} // namespace

Session::Session(const Options& options)
    : folder_(makeFolder())
    , desktop_(withSound(options))
{
    writePreferences();
}

Session::~Session()
{
    if (::testing::Test::HasFailure() || std::uncaught_exceptions() > 0) {
        if (program_)
            std::cerr << "The program's log:\n" << program_->log();
        try {
            keepScreenshot("failed");
        } catch (const HarnessError& error) {
            std::cerr << error.what() << '\n';
        }
    }
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

Keyboard& Session::keyboard()
{
    return keyboard_ ? *keyboard_ : keyboard_.emplace();
}

Program& Session::startProgram(const std::vector<std::string>& prefix)
{
    program_.reset();
    Program started = launch(prefix);
    started.waitForLine("Corvandi: ready");
    return program_.emplace(std::move(started));
}

Program Session::launch(const std::vector<std::string>& prefix)
{
    std::vector<std::string> command = prefix;
    command.push_back(programUnderTest());
    return Program(command, folder_ / ("program" + std::to_string(++launches_) + ".log"));
}

void Session::stopProgram()
{
    program_->process().signal(SIGTERM);
    if (!program_->process().waitUntilEnded())
        throw HarnessError("the program did not end when asked to; its log:\n" + program_->log());
}

void Session::pressHotkey()
{
    keyboard().press(Key::leftAlt);
    keyboard().press(Key::space);
}

Clock::time_point Session::releaseHotkey(ReleaseOrder order)
{
    const bool isKeyFirst = order == ReleaseOrder::keyFirst;
    const auto released = keyboard().release(isKeyFirst ? Key::space : Key::leftAlt);
    keyboard().release(isKeyFirst ? Key::leftAlt : Key::space);
    return released;
}

size_t Session::speak(const Recording& recording, ReleaseOrder order)
{
    const size_t mark = program_->mark();
    pressHotkey();
    program_->waitForLine("first audio", mark);
    desktop::playToEnd(recording.file);
    releaseHotkey(order);
    return mark;
}

std::string Session::dictate(const Recording& recording, const TargetApplication& target, ReleaseOrder order)
{
    const std::string before = target.text();
    program_->waitForLine("text inserted", speak(recording, order));
    return target.waitForAddition(before);
}

void Session::keepScreenshot(const std::string& name) const
{
    desktop::screenshot(std::filesystem::path(CORVANDI_SCREENSHOTS) / (testName() + '.' + name + ".png"));
}

} // namespace corvandi::testing
