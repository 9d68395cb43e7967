#include "tests/app/Program.h"

#include <cstring>
#include <filesystem>

namespace {

Samples WithoutZeros(const std::string& bytes) {
    Samples samples(bytes.size() / sizeof(std::int16_t));
    std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(std::int16_t));
    std::erase(samples, std::int16_t{0});
    return samples;
}

std::string CurrentFile(Program& program) {
    return TemporaryFolder::Read(
        program.Engine().FindHistoryItem(program.Engine().currentHistoryId)->path);
}

TEST(Audition, PlaysTheJoinThatADeletionWritesAndChangesNothing) {
    const TemporaryFolder folder;
    const std::string record = folder.Path("heard");
    qputenv("SDL_AUDIODRIVER", "disk"); // what is heard is written to a file
    qputenv("SDL_DISKAUDIOFILE", record.c_str());
    Program program;
    program.Engine().SetCurrentPosition(8'000);
    program.Engine().cutPositions = {64'000, 40'000}; // in either order
    program.delegate.EnableCutButton();
    const std::string before = program.State();
    const std::string enabled = program.Enabled();
    const std::string path = program.Engine().MakeTargetPath("0");
    QTest::keyClick(program.Find("mainView"), Qt::Key_Space, Qt::ShiftModifier);
    EXPECT_TRUE(std::filesystem::exists(path));
    EXPECT_EQ(program.State() + program.Enabled(), before + enabled);
    Await([&] { return !std::filesystem::exists(path); });
    EXPECT_EQ(program.State() + program.Enabled(), before + enabled);
    EXPECT_EQ(program.Engine().histories.size(), 1);

    program.Trigger("CutDelMenu");
    // Two seconds before the join, which is at 2.5, and the second that is behind it.
    const std::string left = CurrentFile(program).substr(44);
    const Samples expected = WithoutZeros(left.substr(8'000));
    Samples heard = WithoutZeros(TemporaryFolder::Read(record));
    ASSERT_GE(heard.size(), expected.size());
    heard.resize(expected.size());
    EXPECT_TRUE(heard == expected);
    qputenv("SDL_AUDIODRIVER", "dummy");
}

TEST(Audition, IsOfTheVeryCutterAndEndsWithTheNextCommand) {
    Program program(TemporaryFolder::Read(KLIPRA_CLIPS "/joint-stereo-44100.mp3"), "song.mp3");
    const unsigned long long length = program.Engine().length;
    program.Engine().cutPositions = {length / 4, length / 2};
    program.delegate.EnableCutButton();
    const std::string path = program.Engine().MakeTargetPath("0");
    std::string file;
    for (const auto& end : std::vector<std::function<void()>>{
             [&] { QTest::keyClick(program.Find("mainView"), Qt::Key_Space); },
             [&] { program.Trigger("PlayOrStopMenu"); },
             [&] {
                 QTest::mouseClick(program.Find("waveView"), Qt::LeftButton, {}, {9, 9});
             },
             [&] { program.Trigger("BeginButton"); }}) {
        program.Trigger("AuditionMenu");
        file = TemporaryFolder::Read(path);
        EXPECT_NE(file, "");
        end();
        EXPECT_FALSE(std::filesystem::exists(path) || program.Engine().playing);
    }
    program.Trigger("CutDelMenu");
    EXPECT_TRUE(file == CurrentFile(program));
}

} // namespace
