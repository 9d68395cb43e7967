#include "cli/CommandTable.h"
#include "places/TextLines.h"
#include "tests/cli/CliTest.h"
#include "tests/support/Mp3Builder.h"

#include <nlohmann/json.hpp>
#include <png.h>

#include <cmath>
#include <regex>
#include <sstream>

namespace {

namespace fs = std::filesystem;

using nlohmann::json;

using CommandsTest = CliTest;

TEST_F(CommandsTest, ExtractAndCutTakeTimesInEveryFormAndEitherOrder) {
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

TEST_F(CommandsTest, SplitWritesEveryPiece) {
    m_folder.Write("100%-2.wav", "old");
    EXPECT_EQ(Done("split a.WAV 0:07.5 2.5 5 100%-%.wav"), "");
    EXPECT_TRUE(Samples("100%-1.wav") == m_wav.samples.substr(0, 40000));
    EXPECT_TRUE(Samples("100%-2.wav") == m_wav.samples.substr(40000, 40000));
    EXPECT_TRUE(Samples("100%-3.wav") == m_wav.samples.substr(80000, 40000));
    EXPECT_TRUE(Samples("100%-4.wav") == m_wav.samples.substr(120000));
    EXPECT_EQ(Snapshot().size(), 5U);
}

TEST_F(CommandsTest, ScenesListsTheQuietPlacesInEveryForm) {
    EXPECT_EQ(Done("scenes a.WAV --time=0:00.1 --level=0.5"),
              "64000 4.000000\n104000 6.500000\n128800 8.050000\n");
    EXPECT_EQ(Done("scenes --time 0 --level 1e-99 a.WAV"), "");
    const json found = json::parse(Done("scenes --time 0.1 --json a.WAV"));
    EXPECT_EQ(found["positions"].dump(), R"([{"bytes":64000,"seconds":4.0},)"
                                         R"({"bytes":104000,"seconds":6.5},)"
                                         R"({"bytes":128800,"seconds":8.05}])");
    EXPECT_EQ(found["places"].dump(), R"([{"begin":4.0,"end":6.5,"level":3.0517578e-05},)"
                                      R"({"begin":8.0,"end":8.1,"level":3.0517578e-05}])");
    EXPECT_EQ(Done("scenes --form cue a.WAV"),
              "FILE \"a.WAV\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"
              "  TRACK 02 AUDIO\n    INDEX 01 00:04:00\n  TRACK 03 AUDIO\n    INDEX 01 00:06:38\n");
    EXPECT_EQ(Done("scenes --format labels a.WAV ./a.WAV"),
              "4.000000\t4.000000\t1\ta.WAV\n6.500000\t6.500000\t2\ta.WAV\n"
              "4.000000\t4.000000\t1\t./a.WAV\n6.500000\t6.500000\t2\t./a.WAV\n");
}

// Where the pieces fall, as --dry-run tells it; the real run is held to that below.
TEST_F(CommandsTest, SplitFindsItsPlaces) {
    m_folder.Write("list.cue", "FILE a WAVE\nTRACK 1 AUDIO\nTITLE \"A/b\"\nINDEX 01 0:0:0\n"
                               "TRACK 2 AUDIO\nTITLE 100%\nINDEX 01 0:50:15\n");
    m_folder.Write("labels", "10\t20\tx\n20\t30\ty\n40\t100.000001\tz\n");
    const std::pair<std::string, std::string> cases[] = {
        {"end-40 1m p%.wav", "failed"}, // twice the same
        {"end-40 1m1s p%3.wav", "p001 0-60;p002 60-61;p003 61-100;"},
        {"--quiet --time 0.1 p%.wav", "p1 0-5.25;p2 5.25-8.05;p3 8.05-100;"},
        {"--quiet --time 0.1 --min-piece 8 p%.wav", "p1 0-8.05;p2 8.05-100;"},
        {"--quiet --time 0.1 --min-piece 5 p%.wav", "p1 0-5.25;p2 5.25-100;"},
        {"--quiet --level -80dB --time 9 p%.wav", "p1 0-100;"},
        {"--quiet --level auto --time 3 p%.wav", "p1 0-100;"},
        {"--every 30 p%.wav", "p1 0-30;p2 30-60;p3 60-90;p4 90-100;"},
        {"--every 50 p%.wav", "p1 0-50;p2 50-100;"},
        {"--every 1000 p%.wav", "p1 0-100;"},
        {"--at list.cue {title}.wav", "A_b 0-50.2;100% 50.2-100;"},
        {"--at labels '% {title}.wav'", "1 1 0-10;2 x 10-20;3 y 20-30;4 4 30-40;5 z 40-100;"},
    };
    const std::regex line("(.*)\\.wav: ([0-9.]+) to ([0-9.]+) asked, \\2.* to \\3.* as written, "
                          "([0-9]+) sample frames\n");
    for (const auto& [arguments, pieces] : cases) {
        if (pieces == "failed") {
            ExpectFailure(1, "split a.WAV " + arguments, "are the same position");
            continue;
        }
        const std::string told = Done("split --dry-run a.WAV " + arguments);
        std::ostringstream found;
        double end = 0.0;
        for (std::sregex_iterator match(told.begin(), told.end(), line);
             match != std::sregex_iterator(); ++match) {
            found << (*match)[1] << ' ' << end << '-';
            EXPECT_EQ(std::stod((*match)[2]), end) << told;
            end = std::stod((*match)[3]);
            found << end << ';';
        }
        EXPECT_EQ(found.str(), pieces) << told;
    }
    EXPECT_EQ(Snapshot().size(), 3U);
}

// For each format and kind of cut the files hold what the dry run told.
TEST_F(CommandsTest, DryRunsTellWhatTheRealRunDoes) {
    m_folder.Write("b.mp3", Mp3Builder().Id3v2(50).Xing(15, 400, 9).Lame().Frames(400).Bytes());
    m_folder.Write("c.wav", WavBuilder{.formatTag = 3,
                                       .channels = 1,
                                       .rateHz = 1000,
                                       .bytesPerSecond = 4000,
                                       .blockAlign = 4,
                                       .samples = WavBuilder::Pattern(40000)}
                                .Bytes());
    for (const std::string command :
         {"extract a.WAV 1.00001 99 o.wav", "cut a.WAV 1 2 4 5 1.5 2.5 o.wav",
          "extract c.wav 0.0015 end o.wav", "cut c.wav 1 2 o.wav", "extract b.mp3 1 2 o.mp3",
          "extract b.mp3 9 99 o.mp3", "cut b.mp3 1 2 o.mp3", "cut b.mp3 1 2 4 5 8 99 o.mp3",
          "extract --finish a.WAV 1.00001 99 o.wav", "cut --finish c.wav 1 2 o.wav",
          "extract --finish b.mp3 1 2 o.mp3", "cut --finish b.mp3 1 2 4 5 8 9 o.mp3"}) {
        const std::size_t place = command.find(' ');
        const std::string told = Done(std::string(command).insert(place, " --dry-run"));
        EXPECT_EQ(Done(command), "");
        const std::string output = command.substr(command.rfind(' ') + 1);
        const json info = json::parse(Done("info -q --json " + output));
        const double units =
            output == "o.mp3" ? info["frames"].get<double>()
                              : info["seconds"].get<double>() * info["sample_rate"].get<double>();
        const std::string count = Concat({" ", std::to_string(std::lround(units)),
                                          output == "o.mp3" ? " frames\n" : " sample frames\n"});
        EXPECT_TRUE(told.ends_with(count)) << command << "\n" << told << count;
    }
}

// The image's rows, from the top, as bytes of R, G and B.
std::vector<std::string> ReadPng(const std::string& path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    EXPECT_NE(png_image_begin_read_from_file(&image, path.c_str()), 0) << image.message;
    image.format = PNG_FORMAT_RGB;
    std::string pixels(PNG_IMAGE_SIZE(image), '\0');
    EXPECT_NE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr), 0);
    std::vector<std::string> rows;
    for (std::size_t y = 0; y < image.height; ++y) {
        rows.push_back(pixels.substr(y * 3 * image.width, std::size_t{3} * image.width));
    }
    return rows;
}

TEST_F(CommandsTest, WaveWritesAWholePngOfTheSizeAskedFor) {
    EXPECT_EQ(Done("wave --width 100 --zoom 2 a.WAV a.png"), "");
    const std::vector<std::string> rows = ReadPng(m_folder.Path("a.png"));
    ASSERT_EQ(rows.size(), 201U);
    const std::string black(600, '\0');
    for (std::size_t y = 1; y <= 100; ++y) {
        EXPECT_EQ(rows[100 - y], rows[100 + y]) << y; // mono: as much upwards as downwards
        // A second is two columns: from 4.5 to 6 there is next to nothing, and before it is loud.
        EXPECT_EQ(rows[100 - y].substr(27, 9) == black.substr(0, 9), y > 1) << y;
    }
    EXPECT_NE(rows[60].substr(0, 24).find_first_not_of('\0'), std::string::npos);
}

TEST_F(CommandsTest, SeveralFilesAreDoneThoughOneFails) {
    m_folder.Write("b.mp3", Mp3Builder().Xing(1, 4).Frames(4).Bytes());
    ExpectOutcome("info --json b.mp3 none.wav a.WAV", 1,
                  ".\"file\":\"b.mp3\",\"format\":\"mp3\",.*\"frames\":4,\"seconds\":0.1044.*"
                  ".\"file\":\"a.WAV\",\"format\":\"wav\",.*\"seconds\":100.0. ",
                  "klipra-cli: 'none.wav': No such file or directory.");
    ExpectOutcome("scenes --format csv none.mp3 a.WAV", 1,
                  "bytes,seconds,title,file.64000,4.000000,,a.WAV.104000,6.500000,,a.WAV.",
                  "klipra-cli: 'none.mp3': No such file or directory.");
}

TEST_F(CommandsTest, WarningsAreToldByEveryCommandUnlessNotWanted) {
    m_folder.Write("b.mp3", Mp3Builder().Xing(1, 40).Frames(200).Truncate(9).Bytes());
    const std::string warnings = "klipra-cli: warning: 'b.mp3': the last frame .*"
                                 "klipra-cli: warning: 'b.mp3': the header counts other.*";
    for (const std::string command :
         {"info b.mp3", "scenes b.mp3", "wave b.mp3 b.png", "extract b.mp3 1 2 o.mp3",
          "cut b.mp3 1 2 o.mp3", "cut b.mp3 1 2 3 4 o.mp3", "split b.mp3 1 2 o%.mp3",
          "split --dry-run b.mp3 1 o%.mp3"}) {
        ExpectOutcome(command, 0, ".*", warnings);
        ExpectOutcome(command + " -q", 0, ".*", "");
        ExpectOutcome("-q " + command, 0, ".*", "");
    }
}

TEST_F(CommandsTest, TagsAreSetOnlyWhenAskedFor) {
    m_folder.Write("b.mp3", Mp3Builder().Frames(400).Id3v1(7).Bytes());
    m_folder.Write("list", "5\t5\t\xE6\x9B\xB2\n");
    Done("split --at list b.mp3 p%.mp3");
    EXPECT_TRUE(TemporaryFolder::Read(m_folder.Path("p2.mp3")).starts_with("\xFF\xFB"));
    Done("split --tags --at list b.mp3 p%.mp3");
    const std::string tagged = TemporaryFolder::Read(m_folder.Path("p2.mp3"));
    EXPECT_TRUE(tagged.starts_with("ID3"));
    EXPECT_EQ(tagged[tagged.size() - 2], 2); // the track number of the ID3v1 tag
    EXPECT_NE(Done("info p2.mp3").find("title                \xE6\x9B\xB2\n"), std::string::npos);
    Done("split --tags a.WAV 50 w%.wav");
    EXPECT_NE(Done("info --json w2.wav").find("\"seconds\":50.0"), std::string::npos);
    EXPECT_NE(TemporaryFolder::Read(m_folder.Path("w2.wav")).find("IPRT"), std::string::npos);
}

TEST_F(CommandsTest, CompareTellsWhatIsKeptAlteredAndFromElsewhere) {
    m_folder.Write("s.mp3", TemporaryFolder::Read(KLIPRA_CLIPS "/joint-stereo-44100.mp3"));
    Done("cut s.mp3 0.5 1 r.mp3");
    ExpectOutcome("compare s.mp3 r.mp3", 0,
                  "0 to 19 are 1 to 20 of the source 20 to 133 are 40 to 153 of the source "
                  "134 frames: 134 unchanged, 0 altered, 0 from elsewhere ",
                  "");
    Done("cut --finish s.mp3 0.5 1 r.mp3");
    ExpectOutcome("compare s.mp3 r.mp3", 0, ".*[1-9]\\d* altered, 0 from elsewhere ", "");
    Done("extract a.WAV 2 2.0005 r.wav");
    EXPECT_EQ(Done("compare --json a.WAV r.wav"),
              "{\"runs\":[{\"result\":0,\"source\":16000,\"count\":4}],"
              "\"altered\":[],\"foreign\":[]}\n");
    WavBuilder other = m_wav;
    other.samples.resize(4);
    other.formatTag = 6;
    m_folder.Write("other.wav", other.Bytes());
    EXPECT_EQ(Done("compare --json a.WAV other.wav"),
              "{\"runs\":[],\"altered\":[],\"foreign\":[0,1]}\n");
    ExpectFailure(2, "compare a.WAV r.mp3", "needs the extension of the source, .wav");
    ExpectFailure(1, "compare a.WAV none.wav", "'none.wav': No such file");
}

// The manual page and the help are made of these, too.
TEST_F(CommandsTest, EveryExampleRuns) {
    const FrameFormat small{.version = 0, .bitrateKbps = 8, .rateHz = 8000, .channelMode = 3};
    const std::string radio = Mp3Builder().Format(small).Xing(1, 80000).Frames(80000).Bytes();
    for (const char* name : {"radio.mp3", "show.mp3", "lecture.mp3", "concert.mp3"}) {
        m_folder.Write(name, radio);
    }
    m_wav.samples.resize(500 * kSecond, 'x');
    m_folder.Write("tape.wav", m_wav.Bytes());
    m_folder.Write("concert.cue", "TRACK 1 AUDIO\nTITLE a\nINDEX 01 0:0:0\n"
                                  "TRACK 2 AUDIO\nTITLE b\nINDEX 01 70:0:0\n");
    for (const CommandInfo& command : Commands()) {
        EXPECT_FALSE(command.examples.empty());
        for (const Example& example : command.examples) {
            EXPECT_EQ(RunLine(example.line), 0) << example.line;
        }
    }
    EXPECT_TRUE(fs::exists(m_folder.Path("song-3.wav")));
}

TEST_F(CommandsTest, InfoTellsWhereThingsLieAndCommandsNoTerminal) {
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
