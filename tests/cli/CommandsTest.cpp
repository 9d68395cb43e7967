#include "tests/cli/CliTest.h"
#include "tests/support/Mp3Builder.h"

#include <nlohmann/json.hpp>

namespace {

namespace fs = std::filesystem;

using nlohmann::json;

using Commands = CliTest;

TEST_F(Commands, ExtractAndCutTakeTimesInEveryFormAndEitherOrder) {
    for (const std::string range :
         {"90 90.25", "1:30.25 1:30", "end-9.75 1m30s", "9.0e1 01:30.2500"}) {
        EXPECT_EQ(Done("extract -- a.WAV " + range + " out.wav"), "");
        EXPECT_TRUE(Samples("out.wav") == m_wav.samples.substr(90 * kSecond, kSecond / 4)) << range;
    }
    // A link is a name for its file.
    fs::create_symlink("out.wav", m_folder.Path("link.wav"));
    EXPECT_EQ(Done("cut a.WAV 1:30.25 1:30 link.wav"), "");
    EXPECT_TRUE(fs::is_symlink(m_folder.Path("link.wav")));
    EXPECT_TRUE(Samples("out.wav") ==
                m_wav.samples.substr(0, 90 * kSecond) + m_wav.samples.substr(361 * kSecond / 4));
    EXPECT_EQ(Snapshot().size(), 3U);
}

TEST_F(Commands, SplitWritesEveryPiece) {
    m_folder.Write("100%-2.wav", "old");
    EXPECT_EQ(Done("split a.WAV 0:07.5 2.5 5 100%-%.wav"), "");
    EXPECT_TRUE(Samples("100%-1.wav") == m_wav.samples.substr(0, 40000));
    EXPECT_TRUE(Samples("100%-2.wav") == m_wav.samples.substr(40000, 40000));
    EXPECT_TRUE(Samples("100%-3.wav") == m_wav.samples.substr(80000, 40000));
    EXPECT_TRUE(Samples("100%-4.wav") == m_wav.samples.substr(120000));
    EXPECT_EQ(Snapshot().size(), 5U);
}

TEST_F(Commands, ScenesListsTheQuietPlaces) {
    EXPECT_EQ(Done("scenes a.WAV --time=0:00.1 --level=0.5"),
              "64000 4.000000\n104000 6.500000\n128800 8.050000\n");
    EXPECT_EQ(Done("scenes --time 0 --level 1e-99 a.WAV"), "");
    EXPECT_EQ(json::parse(Done("scenes --json a.WAV"))["positions"].dump(),
              R"([{"bytes":64000,"seconds":4.0},{"bytes":104000,"seconds":6.5}])");
}

TEST_F(Commands, WaveWritesAWholePngOfTheSizeAskedFor) {
    EXPECT_EQ(Done("wave --width 100 --zoom 2 a.WAV a.png"), "");
    const std::string png = TemporaryFolder::Read(m_folder.Path("a.png"));
    EXPECT_EQ(png.substr(12, 12), "IHDR" + BigEndian(200) + BigEndian(201));
    EXPECT_EQ(png.substr(png.size() - 8, 4), "IEND");
}

TEST_F(Commands, InfoTellsWhereThingsLieAndCommandsNoTerminal) {
    Mp3Builder file;
    file.Id3v2(1000).Xing(15, 2).Lame("LAME3.9\x1B\xFF").Frames(2).Ape(100);
    m_folder.Write("a.mp3", file.Bytes());
    const json info = json::parse(Done("info a.mp3 --json"));
    EXPECT_EQ(info["audio_begin"], 1010);
    EXPECT_EQ(info["audio_end"], 2261);
    EXPECT_EQ(info["vbr_header"]["lame"]["encoder"], "LAME3.9\x1B\u00FF");
    EXPECT_EQ(Done("info a.mp3").find('\x1B'), std::string::npos);
    EXPECT_EQ(json::parse(Done("info --json a.WAV"))["chunks"][1]["offset"], 36);
}

} // namespace
