#include "cutting/CutWAV.h"

#include "cutting/CutFailure.h"
#include "cutting/PlainWAV.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

namespace {

const std::string kList = WavBuilder::Chunk("LIST", "INFOIART" + WavBuilder::Number(4, 2) + "us");

// What must come out: the source's header with the two sizes, then these samples.
std::string Expected(WavBuilder source, const std::string& samples) {
    source.samples = samples;
    source.dataSize = -1;
    const std::string header = source.Header();
    const auto total = static_cast<std::uint32_t>(header.size() + samples.size());
    return header.substr(0, 4) + WavBuilder::Number(4, total - 8) + header.substr(8) + samples;
}

class CutWAV : public testing::Test {
protected:
    bool Cut(const std::string& source, float start, float end, bool keep) {
        m_source = m_folder.Write("source.wav", source);
        return CutWAVFile(m_source.c_str(), m_output.c_str(), start, end, keep);
    }

    TemporaryFolder m_folder;
    std::string m_source;
    std::string m_output = m_folder.Path("output.wav");
};

TEST_F(CutWAV, WritesWholeSampleFramesOfTheRangeOrOfTheRest) {
    const WavBuilder source{.chunksBefore = kList, .samples = WavBuilder::Pattern(3 * 176400)};
    const std::string& all = source.samples;
    const struct {
        float start;
        float end;
        bool keep;
        std::string expected;
    } cases[] = {
        {1.0F, 2.0F, true, all.substr(176400, 176400)},
        {0.00001F, 0.0001F, true, all.substr(0, 16)}, // bytes 1 and 17, rounded down to 0 and 16
        // An end behind the samples runs on to the end of the file, in whole blocks.
        {2.5F, 100.0F, true, all.substr(441000, 86016)},
        {1e30F, 1e38F, true, ""},
        {0.0F, 1.0F, false, all.substr(176400)},
        {1.0F, 2.0F, false, all.substr(0, 176400) + all.substr(352800)},
        {1.0F, 100.0F, false, all.substr(0, 176400)},
        {2.0F, 2.0F, false, all},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.start) + " to " + std::to_string(c.end));
        EXPECT_TRUE(Cut(source.Bytes(), c.start, c.end, c.keep)) << DescribeFailure(CutFailure());
        EXPECT_EQ(TemporaryFolder::Read(m_output), Expected(source, c.expected));
    }
}

TEST_F(CutWAV, CopiesEveryChunkBeforeTheSamplesAndNoneBehind) {
    const std::string odd = WavBuilder::Chunk("odd ", "abc");
    const std::string samples = WavBuilder::Pattern(8192);
    const WavBuilder sources[] = {
        {.formatSize = 5016, .formatExtension = WavBuilder::Pattern(5000), .samples = samples},
        {.chunksBefore = odd + '\0' + kList, .samples = samples},
        {.chunksBefore = odd + kList, .samples = samples}, // some leave the pad byte out
        {.chunksBefore = WavBuilder::Chunk("big ", std::string(300000, 'x')), .samples = samples},
        {.samples = samples, .after = kList},
        {.samples = samples, .dataSize = 0xFFFFFFF0}, // a recorder that was switched off
    };
    for (const WavBuilder& source : sources) {
        EXPECT_TRUE(Cut(source.Bytes(), 0.0F, 8192.0F / 176400.0F, true))
            << DescribeFailure(CutFailure());
        EXPECT_EQ(TemporaryFolder::Read(m_output), Expected(source, samples));
    }
}

TEST_F(CutWAV, AnEndThatOnlyRoundingPutBehindTheSamplesIsTheirEnd) {
    // Sparse: 3 GB of zeros. The end in single precision lies up to 256 bytes behind the samples.
    constexpr std::uint32_t kSamples = 3000000004;
    const WavBuilder source{.dataSize = kSamples};
    Cut(source.Bytes(), 0.0F, 0.0F, true); // writes the source
    std::filesystem::resize_file(m_source, source.Header().size() + kSamples);
    const double exact = static_cast<double>(kSamples) / 176400.0;
    const float end = std::nextafter(static_cast<float>(exact), 1e9F);
    ASSERT_GT(end * 176400.0F, static_cast<float>(kSamples));
    EXPECT_TRUE(CutWAVFile(m_source.c_str(), m_output.c_str(), 17006.0F, end, true));
    const auto start = static_cast<std::uint32_t>(17006.0F * 176400.0F) / 4 * 4;
    EXPECT_EQ(std::filesystem::file_size(m_output), source.Header().size() + kSamples - start);
}

TEST(PlainBytes, OfAnEndTwoStepsBehindTheSamplesAreAllOfThemAndOfAThirdAsItStands) {
    constexpr std::uint32_t kStep = 256; // between single-precision numbers of this size
    constexpr std::uint32_t kSamples = 3'000'000'000U / kStep * kStep;
    WAVLayout layout;
    layout.bytesPerSecond = 1; // a second is a byte
    layout.blockAlign = 4;
    const auto endOf = [&](std::uint32_t dataSize, std::uint32_t end) {
        layout.chunks = {{"data", 36, dataSize}};
        return PlainBytes(layout, 0.0F, static_cast<float>(end)).end;
    };
    for (const std::uint32_t steps : {1U, 2U, 3U}) {
        const std::uint32_t end = kSamples + steps * kStep;
        EXPECT_EQ(endOf(kSamples, end), steps < 3 ? kSamples : end) << steps;
    }
    EXPECT_EQ(endOf(kSamples, kSamples - kStep), kSamples - kStep);
}

TEST_F(CutWAV, RefusesWhatItCannotCutAndLeavesNoOutput) {
    const std::string samples = WavBuilder::Pattern(100);
    const std::string good = WavBuilder{.samples = samples}.Bytes();
    const std::string bad[] = {
        "RIFX" + good.substr(4),
        good.substr(0, 8) + "AVI " + good.substr(12),
        good.substr(0, 12) + "junk" + good.substr(16), // the format does not come first
        WavBuilder{.formatTag = 3, .samples = samples}.Bytes(),
        WavBuilder{.bytesPerSecond = 0, .samples = samples}.Bytes(),
        WavBuilder{.blockAlign = -4, .samples = samples}.Bytes(),
        WavBuilder{.formatSize = 14, .samples = samples}.Bytes(),
        WavBuilder{}.Bytes(),
    };
    for (const std::string& source : bad) {
        SCOPED_TRACE(&source - bad);
        EXPECT_FALSE(Cut(source, 0.0F, 1.0F, true));
        EXPECT_NE(CutFailure().reason, CutReason::None);
        EXPECT_FALSE(std::filesystem::exists(m_output));
    }
}

} // namespace
