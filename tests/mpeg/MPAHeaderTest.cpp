#include "mpeg/MPAHeader.h"

#include "mpeg/MPAFrame.h"
#include "tests/mpeg/MemoryStream.h"
#include "tests/support/Mp3Builder.h"

#include <gtest/gtest.h>

#include <optional>
#include <utility>

namespace {

// A failure as a result: below 0.
constexpr int Failure(CMPAException::ErrorIDs id) {
    return -static_cast<int>(id);
}

constexpr int kTooFar = Failure(CMPAException::NoFrameWithinTolerance);
constexpr int kEnd = Failure(CMPAException::NoFrameBeforeEOF);
constexpr int kOther = Failure(CMPAException::IncompatibleHeader);

// Where a search for a header of the usual stream ends, or its failure.
long long Search(const std::string& bytes, long long offset, bool exact, bool reverse = false) {
    MemoryStream usual(FrameFormat{}.Header());
    long long begin = 0;
    const CMPAHeader header(&usual, begin, true, false, nullptr);
    MemoryStream stream(bytes);
    try {
        CMPAHeader(&stream, offset, exact, reverse, &header);
    } catch (const CMPAException& error) {
        return Failure(error.GetErrorID());
    }
    return offset;
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
        try {
            frame.emplace(&stream, 0, false, true, false, nullptr);
        } catch (const CMPAException&) {
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
}

TEST(CMPAHeader, HeadersOfOtherStreamsAreRefusedExactlyAndSkippedInAScan) {
    const std::pair<FrameFormat, long long> cases[] = {
        {{2, 3, 128, 22050}, kOther},
        {{3, 2, 128, 44100}, kOther},
        {{3, 3, 128, 48000}, kOther},
        {{3, 3, 128, 44100, 3}, kOther},
        {{3, 3, 128, 44100, 0, 0, 1}, kOther},
        {{3, 3, 320, 44100, 1, 2, 0, true, true}, 3}, // all that may change
    };
    for (const auto& [format, found] : cases) {
        const std::string data = Nothing(3) + format.Header() + Nothing(3) + FrameFormat{}.Header();
        EXPECT_EQ(Search(data, 3, true), found);
        EXPECT_EQ(Search(data, 0, false), found == 3 ? 3 : 10);
    }
}

TEST(CMPAHeader, SearchesWithinItsLimits) {
    const std::string header = FrameFormat{}.Header();
    for (long long place = 16; place <= 24; ++place) {
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
