#include "mpeg/MPAHeader.h"

#include "mpeg/MPAFrame.h"
#include "tests/mpeg/MemoryStream.h"
#include "tests/support/Mp3Builder.h"

#include <gtest/gtest.h>

#include <array>
#include <stdexcept>
#include <utility>

namespace {

constexpr long long Failure(CMPAException::ErrorIDs id) {
    return -1000 - static_cast<long long>(id);
}
constexpr long long kTooFar = Failure(CMPAException::NoFrameWithinTolerance);
constexpr long long kCorrupt = Failure(CMPAException::HeaderCorrupt);

// Where a search finds a header, or in which failure it ends.
long long Search(const std::string& bytes, long long offset, bool exact, bool reverse = false,
                 const CMPAHeader* compare = nullptr) {
    MemoryStream stream(bytes);
    const auto error = ErrorOf([&] { CMPAHeader(&stream, offset, exact, reverse, compare); });
    return error ? Failure(*error) : offset;
}

std::string Nothing(long long bytes) {
    return std::string(static_cast<std::size_t>(bytes), '\0');
}

void ExpectDecoded(const FrameFormat& format) {
    const std::string bytes = format.Header();
    const unsigned int kbps = format.bitrateKbps;
    // ISO/IEC 11172-3, 2.4.2.3: what a mode may have in Layer II.
    const bool isForbidden =
        format.version == 3 && format.layer == 2 &&
        (format.channelMode == 3 ? kbps > 192
                                 : kbps == 32 || kbps == 48 || kbps == 56 || kbps == 80);
    if (isForbidden || format.emphasis == 2) {
        EXPECT_EQ(Search(bytes, 0, true), kCorrupt);
        return;
    }
    MemoryStream stream(bytes);
    const CMPAFrame frame(&stream, 0, false, true, false, nullptr);
    const CMPAHeader& header = *frame.GetHeader();
    const FrameFormat decoded = {
        header.GetVersion(),        header.GetLayer() + 1,    header.GetBitrateBps() / 1000,
        header.GetSamplingRateHz(), header.GetChannelMode(),  header.GetModeExtension(),
        header.GetEmphasis(),       header.GetPadding() != 0, header.IsCRCProtected()};
    EXPECT_EQ(decoded, format);
    EXPECT_EQ(frame.GetSize(), format.SizeBytes());
}

TEST(CMPAHeader, DecodesEveryFormat) {
    int streams = 0;
    for (unsigned int i = 0; i < 3U * 3 * 3 * 56; ++i) {
        const unsigned int version = std::array{3U, 2U, 0U}[i % 3];
        const unsigned int rateHz = std::array{44100U, 48000U, 32000U}[i / 3 % 3];
        const unsigned int rateDivisor = std::array{4U, 0U, 2U, 1U}[version];
        FrameFormat format = {version, i / 9 % 3 + 1, (i / 27 + 1) * 8, rateHz / rateDivisor};
        try {
            SCOPED_TRACE(testing::PrintToString(format.Header()));
            for (unsigned int bits = 0; bits < 256; ++bits) {
                format.channelMode = bits & 3U;
                format.modeExtension = bits >> 2 & 3U;
                format.emphasis = bits >> 4 & 3U;
                format.isPadded = (bits & 0x40U) != 0;
                format.isProtected = (bits & 0x80U) != 0;
                ExpectDecoded(format);
            }
            ++streams;
        } catch (const std::invalid_argument&) { // no such bitrate
        }
    }
    EXPECT_EQ(streams, 3 * 3 * 3 * 14);
    EXPECT_EQ((FrameFormat{}.SizeBytes()), 417U); // what others say of some well-known frames
    EXPECT_EQ((FrameFormat{3, 1, 32, 48000}.SizeBytes()), 32U);
    EXPECT_EQ((FrameFormat{2, 3, 8, 24000}.SizeBytes()), 24U);
}

TEST(CMPAHeader, CandidatesThatAreNoHeadersAreRefusedExactlyAndSkippedInAScan) {
    const std::pair<std::string, long long> cases[] = {
        {"\xFF\xEB\x90\x64", kCorrupt}, // version
        {"\xFF\xF9\x90\x64", kCorrupt}, // layer
        {"\xFF\xFB\x9C\x64", kCorrupt}, // sampling rate
        {"\xFF\xFB\x04\x64", Failure(CMPAException::FreeBitrateNotSupported)},
        {"\xFF\xFB\xF0\x64", kTooFar}, // bitrate
        {"\xFF\xDB\x90\x64", kTooFar}, // sync
    };
    for (const auto& [bytes, failure] : cases) {
        const std::string data = Nothing(3) + bytes + Nothing(3) + FrameFormat{}.Header();
        EXPECT_EQ(Search(data, 3, true), failure);
        EXPECT_EQ(Search(data, 0, false), 10);
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
        EXPECT_EQ(Search(data, 0, false), place > 32768 ? kTooFar : place);
        EXPECT_EQ(Search(data, 2 * place, false, true), place > 32768 ? kTooFar : place);
    }
    for (const bool exact : {false, true}) {
        EXPECT_EQ(Search(Nothing(100), 97, exact), Failure(CMPAException::NoFrameBeforeEOF));
    }
}

TEST(CMPAHeader, ComparesWhatAStreamKeeps) {
    const std::string ours = FrameFormat{}.Header();
    MemoryStream stream(ours);
    long long offset = 0;
    const CMPAHeader header(&stream, offset, true, false, nullptr);
    const std::pair<FrameFormat, bool> cases[] = {
        {{3, 3, 320, 44100, 1, 2, 0, true, true}, true},
        {{2, 3, 128, 22050}, false},
        {{3, 2, 128, 44100}, false},
        {{3, 3, 128, 48000}, false},
        {{3, 3, 128, 44100, 3}, false},
        {{3, 3, 128, 44100, 0, 0, 1}, false},
    };
    for (const auto& [format, isSame] : cases) {
        const std::string data = format.Header() + ours;
        EXPECT_EQ(Search(data, 0, true, false, &header),
                  isSame ? 0 : Failure(CMPAException::IncompatibleHeader));
        EXPECT_EQ(Search(data, 0, false, false, &header), isSame ? 0 : 4);
    }
}

} // namespace
