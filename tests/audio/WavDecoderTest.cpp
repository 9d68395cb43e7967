#include "audio/OpenDecoder.h"
#include "tests/audio/Samples.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>

namespace {

constexpr std::uint16_t kPcm = 1;
constexpr std::uint16_t kFloat = 3;

/// A WAV with so many bits a sample.
std::string Wav(std::uint16_t formatTag, int bits, const std::string& samples,
                std::uint16_t channels = 1) {
    const WavBuilder wav{.formatTag = formatTag,
                         .channels = channels,
                         .rateHz = 96000,
                         .bytesPerSecond = 96000 * channels * bits / 8,
                         .blockAlign = static_cast<std::int16_t>(channels * bits / 8),
                         .samples = samples};
    constexpr std::size_t kBitsOffset = 34;
    return wav.Bytes().replace(kBitsOffset, 1, 1, static_cast<char>(bits));
}

TEST(WavDecoder, SampleFormats) {
    const TemporaryFolder folder;
    const auto decode = [&](const std::string& wav) {
        return DecodeFile(folder.Write("a.wav", wav));
    };
    EXPECT_EQ(decode(Wav(kPcm, 8, std::string("\x00\x80\xFF", 3))), (Samples{-32768, 0, 32512}));
    EXPECT_EQ(decode(Wav(kPcm, 16, std::string("\x34\x12\xFF\xFF", 4))), (Samples{0x1234, -1}));
    EXPECT_EQ(decode(Wav(kPcm, 24, std::string("\xFF\x34\x12\x00\x00\x80", 6))),
              (Samples{0x1234, -32768}));
    EXPECT_EQ(decode(Wav(kPcm, 32, std::string("\xFF\xFF\x34\x12", 4))), (Samples{0x1234}));
    std::string floats; // scaled by full scale, not by the loudest sample
    for (const float value :
         {0.5F, -1.0F, 1.0F, -7.0F, 1.4F / 32768, 1.6F / 32768, INFINITY, -INFINITY, NAN}) {
        floats += WavBuilder::Number(4, std::bit_cast<std::uint32_t>(value));
    }
    EXPECT_EQ(decode(Wav(kFloat, 32, floats)),
              (Samples{16384, -32768, 32767, -32768, 1, 2, 32767, -32768, 0}));
}

TEST(WavDecoder, ReadsTheSameFromAnyPlace) {
    const TemporaryFolder folder;
    const std::string path =
        folder.Write("a.wav", Wav(kPcm, 24, WavBuilder::Pattern(3 * 3 * 20'000), 3));
    const auto decoder = OpenDecoder(path.c_str(), 2);
    EXPECT_EQ(decoder->Format().rateHz, 96000U);
    EXPECT_EQ(decoder->Format().channels, 3U);
    const Samples whole = ReadAll(*decoder);
    EXPECT_EQ(whole.size(), 60'000U);
    ExpectSeeksAgree(*decoder, whole);
}

TEST(WavDecoder, FilesThatLieOrAreCutShort) {
    const TemporaryFolder folder;
    WavBuilder wav{.samples = WavBuilder::Pattern(4000)};
    for (const std::int64_t declared : {0xFFFFFFFFLL, 0x7FFFFFFFLL, 4001LL, 400LL}) {
        wav.dataSize = declared;
        EXPECT_EQ(DecodeFile(folder.Write("a.wav", wav.Bytes())).size(),
                  declared == 400 ? 200U : 2000U)
            << declared;
    }
    for (std::size_t size = 0; size < wav.Header().size() + 10; ++size) {
        // Whatever it gives, it ends.
        DecodeFile(folder.Write("a.wav", wav.Bytes().substr(0, size)));
    }
    for (const auto& [rateHz, channels] : {std::pair{0U, 2U}, std::pair{2'000'000'000U, 2U},
                                           std::pair{44100U, 0U}, std::pair{44100U, 0xFFFFU}}) {
        wav.rateHz = rateHz;
        wav.channels = static_cast<std::uint16_t>(channels);
        EXPECT_EQ(OpenDecoder(folder.Write("a.wav", wav.Bytes()).c_str(), 1), nullptr) << rateHz;
    }
}

} // namespace
