// What vocabulary and switches make of spoken words, by the files that hold them.

#include "data_folder.h"
#include "good_enough.h"
#include "session.h"

#include <cctype>
#include <fstream>

namespace corvandi::testing {
namespace {

using namespace harness;
using Kind = TargetApplication::Kind;

std::string rule(const std::string& from, const std::string& to)
{
    return R"({"id":"6BA7B810-9DAD-11D1-80B4-00C04FD430C8","from":")" + from + R"(","to":")" + to + R"("})";
}

std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

bool mentions(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

TEST(AVocabularyRule, IsHeardInTheNextDictation)
{
    Session session;
    data_folder::write("vocab.json", R"({"global":[)" + rule("ten", "$10") + R"(],"apps":[]})");
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    const std::string text = session.dictate(recordings::goForward(), target);

    EXPECT_TRUE(mentions(text, "$10 meters")) << text;
    EXPECT_TRUE(data_folder::waitForHistory({text}));
}

TEST(ARuleOfOneApplication, IsHeardThereAndNotElsewhere)
{
    Session session;
    data_folder::write("vocab.json", R"({"global":[)" + rule("ten", "10") +
                                         R"(],"apps":[{"bundleID":"qt_text_field","name":"Field","rules":[)" +
                                         rule("Ten", "twelve") + "]}]}");
    const TargetApplication elsewhere(Kind::gtkField, session.folder());
    const TargetApplication there(Kind::qtField, session.folder());
    session.startProgram();
    const std::string text = session.dictate(recordings::goForward(), there);
    EXPECT_TRUE(mentions(text, "twelve meters")) << text;

    elsewhere.activate();
    const std::string other = session.dictate(recordings::goForward(), elsewhere);
    EXPECT_TRUE(mentions(other, "10 meters")) << other;
}

TEST(AVocabularyOfTheEarlierForm, WorksAndIsWrittenAnew)
{
    Session session;
    data_folder::write("vocab.json", "[" + rule("ten", "10") + "]");
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    const std::string text = session.dictate(recordings::goForward(), target);
    session.stopProgram();

    EXPECT_TRUE(mentions(text, "10 meters")) << text;
    EXPECT_EQ(contentOf(data_folder::path() / "vocab.json"),
              R"({"global":[)" + rule("ten", "10") + R"(],"apps":[]})");
}

TEST(FilesThatAreNone, AreSetAsideAndTheProgramWorks)
{
    Session session;
    data_folder::write("vocab.json", "{");
    data_folder::write("history.json", "not JSON");
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    const std::string text = session.dictate(recordings::goForward(), target);

    EXPECT_TRUE(data_folder::waitForHistory({text}));
    EXPECT_EQ(contentOf(data_folder::path() / "vocab.json.corrupt"), "{");
    EXPECT_EQ(contentOf(data_folder::path() / "history.json.corrupt"), "not JSON");
    EXPECT_TRUE(session.program().lineWith("Corvandi: failed to load history.json: "));
    EXPECT_TRUE(session.program().lineWith("Corvandi: failed to load vocab.json: "));
}

TEST(AFolderThatCannotBeMade, IsToldAndTheDictationArrives)
{
    Session session;
    std::filesystem::create_directories(data_folder::path().parent_path());
    std::ofstream(data_folder::path()) << "a file in the folder's place";
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    EXPECT_TRUE(
        saysWhatWasSaid(session.dictate(recordings::goForward(), target), recordings::goForward().reference));

    session.program().waitForLine("Corvandi: failed to create store directory: ");
    session.program().waitForLine("Corvandi: failed to write history.json: ");
    EXPECT_EQ(contentOf(data_folder::path()), "a file in the folder's place");
}

TEST(WithoutAutomaticPunctuation, TheTextIsLowerCaseAndHasNone)
{
    Session session;
    writePreferences({"autoPunctuation=false"});
    const TargetApplication target(Kind::qtField, session.folder());
    session.startProgram();
    const std::string text = session.dictate(recordings::goForward(), target);

    EXPECT_TRUE(saysWhatWasSaid(text, recordings::goForward().reference));
    for (const char character : text)
        EXPECT_TRUE(character == ' ' || std::islower(static_cast<unsigned char>(character))) << text;
}

} // namespace
} // namespace corvandi::testing
