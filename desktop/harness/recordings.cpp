#include "harness/recordings.h"

#include "harness/child_process.h"

namespace corvandi::harness::recordings {
namespace {

const std::filesystem::path folderOfRecordings = "/usr/share/pocketsphinx/test/data";

Recording sentence(const std::string& number, const std::string& reference)
{
    return {folderOfRecordings / "librivox" / ("sense_and_sensibility_01_austen_64kb-" + number + ".wav"),
            reference};
}

/// Arguments that tell sox what a file is; raw ones have no header.
std::vector<std::string> soxInput(const std::filesystem::path& file)
{
    if (file.extension() == ".raw")
        return {"-t", "raw", "-r", "16000", "-e", "signed", "-b", "16", "-c", "1", file.string()};
    return {file.string()};
}

std::filesystem::path paddedCopy(const Recording& part, double silence, const std::filesystem::path& file)
{
    std::vector<std::string> command{"sox"};
    for (const std::string& argument : soxInput(part.file))
        command.push_back(argument);
    for (const std::string& argument : {std::string("-r"), std::string("16000"), file.string(),
                                        std::string("pad"), std::to_string(silence)})
        command.push_back(argument);
    (void)outputOf(command);
    return file;
}

} // namespace

Recording goForward()
{
    return {folderOfRecordings / "goforward.raw", "go forward ten meters"};
}

Recording goSomewhere()
{
    return {folderOfRecordings / "something.raw", "go somewhere and do something"};
}

Recording digits()
{
    return {folderOfRecordings / "tidigits/dhd.2934z.raw", "two nine three four zero"};
}

Recording moreAmiable()
{
    return sentence("0920", "had he married a more amiable woman he might have been made still more "
                            "respectable than he was");
}

std::vector<Recording> novel()
{
    return {sentence("0870", "and mister john dashwood had then leisure to consider how much there might be "
                             "prudently in his power to do for them"),
            sentence("0880", "he was not an ill disposed young man"),
            sentence("0890", "unless to be rather cold hearted and rather selfish is to be ill disposed"),
            moreAmiable(), sentence("0930", "he might even have been made amiable himself")};
}

Recording joined(const std::vector<Recording>& parts, std::chrono::milliseconds pause,
                 const std::filesystem::path& folder)
{
    const double silence = std::chrono::duration<double>(pause).count();
    std::vector<std::string> command{"sox"};
    Recording whole{folder / "joined.wav", {}};
    for (const Recording& part : parts) {
        const bool isFirst = whole.reference.empty();
        const auto copy = folder / ("part" + std::to_string(command.size()) + ".wav");
        command.push_back(paddedCopy(part, isFirst ? 0 : silence, copy).string());
        whole.reference += (isFirst ? "" : " ") + part.reference;
    }
    command.push_back(whole.file.string());
    (void)outputOf(command);
    return whole;
}

} // namespace corvandi::harness::recordings
