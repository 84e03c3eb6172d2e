// dictation_latency PROGRAM [RUNS]: on the virtual desktop that it is started in, dictates recordings of
// a human voice into a terminal, and prints what a person waits for: from the press to the first sound
// that reaches the speech service, and from the release to the whole text in the terminal.
//
//   desktop/desktop with audio=pulse -- build/release/bench/dictation_latency build/release/src/app/corvandi

#include "load_average.h"

#include "harness/keyboard.h"
#include "harness/preferences.h"
#include "harness/program.h"
#include "harness/recordings.h"
#include "harness/target_application.h"
#include "harness/virtual_desktop.h"
#include "harness/word_errors.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <vector>

namespace {

using namespace corvandi::harness;
using namespace std::chrono_literals;

constexpr int defaultRuns = 10;
/// A minute takes a minute: fewer of them.
constexpr int minuteRuns = 3;

struct Measurement {
    double pressToFirstAudio;
    double releaseToText;
    size_t wordErrors;
};

Measurement dictate(const Recording& recording, const Program& program, const TargetApplication& terminal,
                    Keyboard& keyboard)
{
    const size_t mark = program.mark();
    const std::string before = terminal.text();
    keyboard.press(Key::leftAlt);
    keyboard.press(Key::space);
    const std::string firstAudio = program.waitForLine("first audio", mark);
    desktop::playToEnd(recording.file);
    const auto released = keyboard.release(Key::space);
    keyboard.release(Key::leftAlt);
    program.waitForLine("text inserted", mark);
    const std::string arrived = terminal.waitForAddition(before);
    const auto waited =
        std::chrono::duration<double, std::milli>(terminal.changes().back().at - released).count();
    return {static_cast<double>(millisecondsIn(firstAudio).value_or(-1ms).count()), waited,
            wordErrors(recording.reference, arrived)};
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void report(const char* name, const Recording& recording, const std::vector<Measurement>& runs)
{
    std::vector<double> first;
    std::vector<double> text;
    size_t errors = 0;
    for (const Measurement& run : runs) {
        first.push_back(run.pressToFirstAudio);
        text.push_back(run.releaseToText);
        errors += run.wordErrors;
    }
    const size_t words = wordsOf(recording.reference).size() * runs.size();
    std::printf("%-22s %4zu   %6.0f %6.0f     %6.0f %6.0f      %5.1f %%\n", name, runs.size(), median(first),
                *std::max_element(first.begin(), first.end()), median(text),
                *std::max_element(text.begin(), text.end()),
                100.0 * static_cast<double>(errors) / static_cast<double>(words));
    std::fflush(stdout);
}

Recording minute(const std::filesystem::path& folder)
{
    std::vector<Recording> parts = recordings::novel();
    for (int i = 0; i < 2; ++i) {
        for (const Recording& part : {recordings::goForward(), recordings::goSomewhere(),
                                      recordings::digits(), recordings::moreAmiable()})
            parts.push_back(part);
    }
    return recordings::joined(parts, 600ms, folder);
}

void measure(const char* name, const Recording& recording, int count, const Program& program,
             const TargetApplication& terminal)
{
    Keyboard keyboard;
    std::vector<Measurement> runs;
    for (int run = 0; run < count; ++run)
        runs.push_back(dictate(recording, program, terminal, keyboard));
    report(name, recording, runs);
}

void measureAll(const std::string& command, int count)
{
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "corvandi-latency";
    std::filesystem::create_directories(folder);
    const TargetApplication terminal(TargetApplication::Kind::terminal, folder);
    writePreferences();
    const Program program({command}, folder / "corvandi.log");
    program.waitForLine("Corvandi: ready");
    std::printf("load %s\n\n", corvandi::loadAverage().c_str());
    std::printf("                              press to first   release to whole\n"
                "                              audio (ms)       text (ms)\n"
                "recording              runs   median  worst    median  worst     word errors\n");
    measure("2.8 s, four words", recordings::goForward(), count, program, terminal);
    measure("6.1 s, a sentence", recordings::moreAmiable(), count, program, terminal);
    measure("a minute with pauses", minute(folder), minuteRuns, program, terminal);
    std::filesystem::remove_all(folder);
}

} // namespace

int main(int count, char** arguments)
{
    if (count < 2 || count > 3) {
        std::cerr << "usage: dictation_latency PROGRAM [RUNS]\n";
        return EXIT_FAILURE;
    }
    try {
        measureAll(arguments[1], count == 3 ? std::atoi(arguments[2]) : defaultRuns);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << "measuring failed: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
