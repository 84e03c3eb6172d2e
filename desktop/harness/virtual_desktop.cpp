#include "harness/virtual_desktop.h"

#include "harness/growing_file.h"

#include <cstdlib>
#include <sstream>

extern char** environ;

namespace corvandi::harness {
namespace {

using Environment = std::map<std::string, std::string>;

constexpr const char* desktopCommand = CORVANDI_DESKTOP_COMMAND;

Environment currentEnvironment()
{
    Environment environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const size_t end = text.find('=');
        environment[text.substr(0, end)] = text.substr(end + 1);
    }
    return environment;
}

void enter(const Environment& environment)
{
    ::clearenv();
    for (const auto& [name, value] : environment)
        ::setenv(name.c_str(), value.c_str(), 1);
}

Environment environmentOf(const std::string& folder)
{
    Environment environment;
    std::istringstream entries(outputOf({desktopCommand, "run", folder, "env", "-0"}));
    for (std::string entry; std::getline(entries, entry, '\0');) {
        const size_t end = entry.find('=');
        environment[entry.substr(0, end)] = entry.substr(end + 1);
    }
    return environment;
}

/// A new name for a file below the folder for temporary files.
std::filesystem::path temporaryFile()
{
    std::string name = (std::filesystem::temp_directory_path() / "corvandi-test.XXXXXX").string();
    const FileDescriptor file(::mkstemp(name.data()));
    return name;
}

/// The desktop lives as long as the command inside it, which lives as long as our end of its input:
/// the kernel closes that in whatever way this process ends.
ChildProcess startHolder(const std::vector<std::string>& options, const std::filesystem::path& output)
{
    std::vector<std::string> command{desktopCommand, "with"};
    command.insert(command.end(), options.begin(), options.end());
    for (const char* part : {"--", "sh", "-c", "echo \"folder $CORVANDI_DESKTOP\"; exec cat"})
        command.emplace_back(part);
    return ChildProcess(command, {.output = output, .input = ChildInput::pipe});
}

/// Waits until the holder said where the desktop is.
std::string folderFrom(const GrowingFile& output)
{
    const std::string label = "folder ";
    const auto said = [&label](const std::string& contents) {
        const size_t start = contents.find(label);
        return start != std::string::npos && contents.find('\n', start) != std::string::npos;
    };
    const bool isUp = output.waitUntil(said);
    const std::string contents = output.contents();
    if (!isUp)
        throw HarnessError("the virtual desktop did not start: " + contents);
    const size_t start = contents.find(label) + label.size();
    return contents.substr(start, contents.find('\n', start) - start);
}

} // namespace

VirtualDesktop::VirtualDesktop(const std::vector<std::string>& options)
    : outerEnvironment_(currentEnvironment())
    , holder_([&options] {
        const GrowingFile output(temporaryFile());
        ChildProcess holder = startHolder(options, output.path());
        const std::string folder = folderFrom(output);
        std::filesystem::remove(output.path());
        enter(environmentOf(folder));
        return holder;
    }())
{
}

VirtualDesktop::~VirtualDesktop()
{
    enter(outerEnvironment_);
    holder_.closeInput();
    (void)holder_.waitUntilEnded();
}

namespace desktop {

ChildProcess play(const std::filesystem::path& recording)
{
    return ChildProcess({desktopCommand, "play", recording.string()});
}

void playToEnd(const std::filesystem::path& recording)
{
    constexpr std::chrono::minutes longest{3};
    if (play(recording).waitUntilEnded(Clock::now() + longest) != 0)
        throw HarnessError("could not play " + recording.string());
}

void screenshot(const std::filesystem::path& file)
{
    std::filesystem::create_directories(file.parent_path());
    (void)outputOf({desktopCommand, "shot", file.string()});
}

void plugMicrophone()
{
    (void)outputOf({desktopCommand, "plug"});
}

void unplugMicrophone()
{
    (void)outputOf({desktopCommand, "unplug"});
}

void restart(const std::string& service)
{
    (void)outputOf({desktopCommand, "restart", service});
}

void end(const std::string& service)
{
    (void)outputOf({desktopCommand, "end", service});
}

std::vector<pid_t> processesOf(const std::string& service)
{
    std::vector<pid_t> processes;
    std::istringstream lines(outputOf({desktopCommand, "pid", service}));
    for (pid_t id = 0; lines >> id;)
        processes.push_back(id);
    return processes;
}

} // namespace desktop
} // namespace corvandi::harness
