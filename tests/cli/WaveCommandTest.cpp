#include "tests/cli/RunCli.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <gtest/gtest.h>
#include <png.h>

#include <vector>

namespace {

/// An RGB picture; no width when it cannot be read.
struct Picture {
    explicit Picture(const std::string& path) {
        image.version = PNG_IMAGE_VERSION;
        if (png_image_begin_read_from_file(&image, path.c_str()) != 0) {
            image.format = PNG_FORMAT_RGB;
            bytes.resize(PNG_IMAGE_SIZE(image));
            png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr);
        }
    }

    std::vector<int> PixelAt(std::size_t x, std::size_t y) const {
        const auto* pixel = &bytes.at(3 * (y * image.width + x));
        return {pixel[0], pixel[1], pixel[2]};
    }

    png_image image{};
    std::vector<png_byte> bytes;
};

/// A second of stereo at 8000 Hz: full scale on the left in the first half, silence in the second.
std::string HalfSecond() {
    std::string samples(std::size_t{8000} * 4, '\0');
    for (std::size_t frame = 0; frame < 4000; ++frame) {
        samples[4 * frame + 1] = '\x80';
    }
    return WavBuilder{.rateHz = 8000, .bytesPerSecond = 32000, .samples = samples}.Bytes();
}

TEST(WaveCommand, WritesTheImageAsPng) {
    const TemporaryFolder folder;
    const std::string input = folder.Write("a.WAV", HalfSecond());
    const std::string output = folder.Write("a.png", "old");
    const CliResult result = RunCli({"wave", "--width", "25", "--zoom", "2", input, output});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out + result.err, "");
    const Picture picture(output);
    ASSERT_EQ(picture.image.width, 50U);
    ASSERT_EQ(picture.image.height, 201U);
    EXPECT_EQ(picture.PixelAt(24, 0), (std::vector{255, 0, 0}));
    EXPECT_EQ(picture.PixelAt(24, 99), (std::vector{2, 253, 0}));
    EXPECT_EQ(picture.PixelAt(25, 99), (std::vector{0, 0, 0}));
    EXPECT_EQ(picture.PixelAt(0, 101), (std::vector{0, 0, 0}));
}

TEST(WaveCommand, RefusesWhatNoImageCanBe) {
    const TemporaryFolder folder;
    const std::string input = folder.Write("a.wav", HalfSecond());
    const std::string output = folder.Write("a.png", "old");
    for (const char* option : {"--width=0", "--width=10001", "--width=1e3", "--zoom=101",
                               "--zoom=-1", "--zoom=2x", "--level=1"}) {
        EXPECT_EQ(RunCli({"wave", option, input, output}).status, 2) << option;
    }
    const CliResult tooShort = RunCli({"wave", "--zoom", "2", input, output});
    EXPECT_EQ(tooShort.status, 1);
    EXPECT_NE(tooShort.err.find("at this width at most 1"), std::string::npos) << tooShort.err;
    const std::string noAudio = folder.Write("b.mp3", "not audio");
    const CliResult unreadable = RunCli({"wave", noAudio, output});
    EXPECT_EQ(unreadable.status, 1);
    EXPECT_EQ(unreadable.err, "klipra-cli: '" + noAudio + "': holds no audio to decode\n");
    EXPECT_EQ(RunCli({"wave", input, input}).status, 1);
    EXPECT_EQ(RunCli({"wave", input, folder.Path("no/such/folder.png")}).status, 1);
    EXPECT_EQ(TemporaryFolder::Read(output), "old");
    EXPECT_EQ(TemporaryFolder::Read(input), HalfSecond());
}

} // namespace
