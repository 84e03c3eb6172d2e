// dictation_demo PROGRAM FOLDER: on the desktop that it is started in, dictates a recording of a human
// voice into a terminal, and tells what was said, what arrived in the terminal and how long it took.
// Pictures of the screen go into FOLDER.

#include "harness/keyboard.h"
#include "harness/preferences.h"
#include "harness/program.h"
#include "harness/recordings.h"
#include "harness/target_application.h"
#include "harness/virtual_desktop.h"
#include "harness/word_errors.h"

#include <cstdlib>
#include <iostream>
#include <thread>

namespace {

using namespace corvandi::harness;
using namespace std::chrono_literals;

/// What a dictation came to, as seen from outside.
struct Outcome {
    std::string arrived;
    std::chrono::milliseconds pressToFirstAudio;
    std::chrono::milliseconds releaseToText;
};

Outcome dictate(const Recording& recording, const Program& program, const TargetApplication& terminal,
                const std::filesystem::path& pictures)
{
    Keyboard keyboard;
    keyboard.press(Key::leftAlt);
    keyboard.press(Key::space);
    const std::string firstAudio = program.waitForLine("first audio");
    ChildProcess voice = desktop::play(recording.file);
    // Well into the sentence.
    std::this_thread::sleep_for(2s);
    desktop::screenshot(pictures / "recording.png");
    if (voice.waitUntilEnded() != 0)
        throw HarnessError("the recording could not be played");
    const auto released = keyboard.release(Key::space);
    keyboard.release(Key::leftAlt);
    program.waitForLine("text inserted");
    (void)terminal.waitForAddition("");
    desktop::screenshot(pictures / "result.png");
    if (terminal.changes().empty())
        throw HarnessError("nothing arrived in the terminal");
    const TargetApplication::Change last = terminal.changes().back();
    return {last.text, millisecondsIn(firstAudio).value_or(-1ms),
            std::chrono::round<std::chrono::milliseconds>(last.at - released)};
}

int report(const Recording& recording, const Outcome& outcome, const std::filesystem::path& pictures)
{
    const size_t errors = wordErrors(recording.reference, outcome.arrived);
    const size_t words = wordsOf(recording.reference).size();
    std::cout << "\nsaid:                     " << recording.reference
              << "\narrived in the terminal:  " << outcome.arrived << "\nword errors:              " << errors
              << " of " << words << "\npress to first audio:     " << outcome.pressToFirstAudio.count()
              << " ms"
              << "\nrelease to complete text: " << outcome.releaseToText.count() << " ms"
              << "\nscreenshots:              " << (pictures / "recording.png").string()
              << " (while speaking)"
              << "\n                          " << (pictures / "result.png").string() << " (afterwards)\n";
    // The engine gets about one word in twenty of this sentence wrong; far more is a failure.
    constexpr size_t oneIn = 4;
    return errors * oneIn <= words ? EXIT_SUCCESS : EXIT_FAILURE;
}

int demonstrate(const std::string& command, const std::filesystem::path& pictures)
{
    std::filesystem::create_directories(pictures);
    const Recording recording = recordings::moreAmiable();
    const TargetApplication terminal(TargetApplication::Kind::terminal, pictures);
    writePreferences();
    const Program program({command}, pictures / "corvandi.log");
    program.waitForLine("Corvandi: ready");
    std::cout << "Corvandi is running; holding Alt+Space and speaking." << std::endl;
    return report(recording, dictate(recording, program, terminal, pictures), pictures);
}

} // namespace

int main(int count, char** arguments)
{
    if (count != 3) {
        std::cerr << "usage: dictation_demo PROGRAM FOLDER\n";
        return EXIT_FAILURE;
    }
    try {
        return demonstrate(arguments[1], std::filesystem::absolute(arguments[2]));
    } catch (const std::exception& error) {
        std::cerr << "The demonstration failed: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
