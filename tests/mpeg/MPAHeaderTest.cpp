#include "mpeg/MPAHeader.h"

#include "mpeg/MPAFrame.h"
#include "tests/mpeg/MemoryStream.h"
#include "tests/support/Mp3Builder.h"

#include <gtest/gtest.h>

#include <optional>
#include <utility>

namespace {

constexpr int kTooFar = Failure(CMPAException::NoFrameWithinTolerance);
constexpr int kEnd = Failure(CMPAException::NoFrameBeforeEOF);
constexpr int kCorrupt = Failure(CMPAException::HeaderCorrupt);
constexpr int kFree = Failure(CMPAException::FreeBitrateNotSupported);
constexpr int kOther = Failure(CMPAException::IncompatibleHeader);

// Where a search for a header of the usual stream ends, or its failure as a negative number.
long long Search(const std::string& bytes, long long offset, bool exact, bool reverse = false) {
    MemoryStream usual(FrameFormat{}.Header());
    long long begin = 0;
    const CMPAHeader header(&usual, begin, true, false, nullptr);
    MemoryStream stream(bytes);
    const auto error = ErrorOf([&] { CMPAHeader(&stream, offset, exact, reverse, &header); });
    return error ? Failure(*error) : offset;
}

std::string Nothing(long long bytes) {
    return std::string(static_cast<std::size_t>(bytes), '\0');
}

TEST(CMPAHeader, DecodesEveryFormat) {
    int formats = 0;
    for (unsigned int i = 0; i < 1U << 18; ++i) {
        // Every header but for its private, copyright and original bits.
        const std::string bytes =
            BigEndian(0xFFE00000 | (i >> 6) << 9 | (i >> 2 & 0xFU) << 4 | (i & 3U));
        MemoryStream stream(bytes);
        std::optional<CMPAFrame> frame;
        if (ErrorOf([&] { frame.emplace(&stream, 0, false, true, false, nullptr); })) {
            continue;
        }
        const CMPAHeader& header = *frame->GetHeader();
        const unsigned int kbps = header.GetBitrateBps() / 1000;
        const FrameFormat format = {
            header.GetVersion(),        header.GetLayer() + 1,    kbps,
            header.GetSamplingRateHz(), header.GetChannelMode(),  header.GetModeExtension(),
            header.GetEmphasis(),       header.GetPadding() != 0, header.IsCRCProtected()};
        ASSERT_EQ(format.Header(), bytes);
        ASSERT_EQ(frame->GetSize(), format.SizeBytes());
        // ISO/IEC 11172-3, 2.4.2.3: what a mode may have in Layer II.
        ASSERT_TRUE(format.version != 3 || format.layer != 2 ||
                    (format.channelMode == 3
                         ? kbps <= 192
                         : kbps != 32 && kbps != 48 && kbps != 56 && kbps != 80));
        ++formats;
    }
    // All versions, layers, rates, bitrates and other bits but an emphasis; less what Layer II
    // may not have: four bitrates in three modes, and four in the fourth.
    EXPECT_EQ(formats, (3 * 3 * 3 * 14 * 4 * 4 - 3 * (4 * 3 + 4) * 4) * 4 * 3);
    EXPECT_EQ((FrameFormat{}.SizeBytes()), 417U); // what others say of some well-known frames
    EXPECT_EQ((FrameFormat{3, 1, 32, 48000}.SizeBytes()), 32U);
    EXPECT_EQ((FrameFormat{2, 3, 8, 24000}.SizeBytes()), 24U);
}

TEST(CMPAHeader, CandidatesThatDoNotFitAreRefusedExactlyAndSkippedInAScan) {
    const std::pair<std::string, long long> cases[] = {
        {"\xFF\xEB\x90\x64", kCorrupt}, // version
        {"\xFF\xF9\x90\x64", kCorrupt}, // layer
        {"\xFF\xFB\x9C\x64", kCorrupt}, // sampling rate
        {"\xFF\xFB\x90\x66", kCorrupt}, // emphasis
        {"\xFF\xFD\x10\x04", kCorrupt}, // 32 kbit/s in stereo, Layer II
        {"\xFF\xFB\x04\x64", kFree},
        {"\xFF\xFB\xF0\x64", kTooFar}, // bitrate
        {"\xFF\xDB\x90\x64", kTooFar}, // sync
        {FrameFormat{2, 3, 128, 22050}.Header(), kOther},
        {FrameFormat{3, 2, 128, 44100}.Header(), kOther},
        {FrameFormat{3, 3, 128, 48000}.Header(), kOther},
        {FrameFormat{3, 3, 128, 44100, 3}.Header(), kOther},
        {FrameFormat{3, 3, 128, 44100, 0, 0, 1}.Header(), kOther},
        {FrameFormat{3, 3, 320, 44100, 1, 2, 0, true, true}.Header(), 3}, // all that may change
    };
    for (const auto& [bytes, found] : cases) {
        const std::string data = Nothing(3) + bytes + Nothing(3) + FrameFormat{}.Header();
        EXPECT_EQ(Search(data, 3, true), found);
        EXPECT_EQ(Search(data, 0, false), found == 3 ? 3 : 10);
    }
}

TEST(CMPAHeader, SearchesWithinItsLimits) {
    const std::string header = FrameFormat{}.Header();
    for (const long long place : {16, 17, 18, 19, 20, 21, 22, 23, 24}) {
        EXPECT_EQ(Search(Nothing(place) + header + Nothing(20), 20, true),
                  place < 17 || place > 23 ? kTooFar : place);
    }
    for (const long long place : {0, 1, 32768, 32769}) {
        const std::string data = Nothing(place) + header + Nothing(place);
        const long long found = place > 32768 ? kTooFar : place;
        EXPECT_EQ(Search(data, 0, false), found);
        EXPECT_EQ(Search(data, 2 * place, false, true), found);
    }
    EXPECT_EQ(Search(Nothing(100), 97, false), kEnd);
    EXPECT_EQ(Search(Nothing(100), 97, true), kEnd);
}

} // namespace
