#include "tests/cli/CliTest.h"
#include "tests/support/Mp3Builder.h"

#include <nlohmann/json.hpp>
#include <png.h>

namespace {

namespace fs = std::filesystem;

using Commands = CliTest;

TEST_F(Commands, ExtractAndCutTakeTimesInEveryFormAndEitherOrder) {
    const std::string ranges[] = {"90 90.25", "1:30 1:30.25", "0:01:30.25 0:1:30", "90.25 90",
                                  "9.0e1 01:30.2500"};
    for (const std::string& range : ranges) {
        EXPECT_EQ(Done("extract a.WAV " + range + " out"), "");
        EXPECT_TRUE(Samples("out") == m_wav.samples.substr(90 * kSecond, kSecond / 4)) << range;
    }
    // A link is a name for its file.
    fs::create_symlink("out", m_folder.Path("link"));
    EXPECT_EQ(Done("cut a.WAV 1:30.25 1:30 link"), "");
    EXPECT_TRUE(fs::is_symlink(m_folder.Path("link")));
    EXPECT_TRUE(Samples("out") ==
                m_wav.samples.substr(0, 90 * kSecond) + m_wav.samples.substr(361 * kSecond / 4));
    EXPECT_EQ(Snapshot().size(), 3U);
}

TEST_F(Commands, TakeNamesThatLookLikeSomethingElse) {
    Mp3Builder().Frames(30).WriteTo(m_folder.Path("-1 %s'\".mp3"));
    Done(R"(extract -- "-1 %s'\".mp3" 0 0.1 曲.mp3)");
    EXPECT_EQ(fs::file_size(m_folder.Path("曲.mp3")), 5 * 417U);
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
    const std::string pause = "64000 4.000000\n104000 6.500000\n";
    EXPECT_EQ(Done("scenes a.WAV"), pause);
    EXPECT_EQ(Done("scenes a.WAV --time 0.1"), pause + "128800 8.050000\n");
    EXPECT_EQ(Done("scenes a.WAV --time=0:00.1 --level=0.5"), pause + "128800 8.050000\n");
    EXPECT_EQ(Done("scenes --time 0 --level 1e-9 a.WAV"), "");
    EXPECT_EQ(nlohmann::json::parse(Done("scenes --json a.WAV")).dump(),
              R"({"positions":[{"bytes":64000,"seconds":4.0},{"bytes":104000,"seconds":6.5}]})");
}

TEST_F(Commands, WaveWritesTheImageAsPng) {
    // A second of stereo: full scale on the left in the first half, silence in the second.
    WavBuilder wav{.rateHz = 8000, .bytesPerSecond = 32000, .samples = std::string(32000, '\0')};
    for (std::size_t i = 1; i < 16000; i += 4) {
        wav.samples[i] = '\x80';
    }
    m_folder.Write("b.WAV", wav.Bytes());
    m_folder.Write("b.png", "old");
    EXPECT_EQ(Done("wave --width 25 --zoom 2 b.WAV b.png"), "");
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    png_image_begin_read_from_file(&image, m_folder.Path("b.png").c_str());
    ASSERT_EQ(image.width, 50U);
    ASSERT_EQ(image.height, 201U);
    image.format = PNG_FORMAT_RGB;
    std::vector<png_byte> bytes(PNG_IMAGE_SIZE(image));
    png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr);
    const auto pixelAt = [&](std::ptrdiff_t x, std::ptrdiff_t y) {
        const auto pixel = bytes.begin() + 3 * (y * 50 + x);
        return std::vector<int>(pixel, pixel + 3);
    };
    EXPECT_EQ(pixelAt(24, 0), (std::vector{255, 0, 0}));
    EXPECT_EQ(pixelAt(24, 99), (std::vector{2, 253, 0}));
    EXPECT_EQ(pixelAt(25, 99), (std::vector{0, 0, 0}));
    EXPECT_EQ(pixelAt(0, 101), (std::vector{0, 0, 0}));
}

TEST_F(Commands, AreListedByHelp) {
    const std::string help = Done("--help");
    for (const std::string command : {"info", "extract", "cut", "split", "scenes", "wave"}) {
        EXPECT_NE(help.find("klipra-cli " + command + " "), std::string::npos);
    }
    EXPECT_EQ(Done("--version").substr(0, 11), "klipra-cli ");
}

} // namespace
