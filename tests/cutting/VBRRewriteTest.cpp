#include "cutting/CutMP3.h"
#include "cutting/VBRFields.h"
#include "mpeg/XINGHeader.h"
#include "tests/support/Mp3Builder.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

constexpr unsigned int kFrameBytes = 417;
constexpr float kFrameSeconds = 1152.0F / 44100.0F;

class VBRRewrite : public testing::Test {
protected:
    std::string Keep(const Mp3Builder& source, float startFrames, float endFrames) {
        const std::string input = m_folder.Path("source.mp3");
        const std::string output = m_folder.Path("output.mp3");
        source.WriteTo(input);
        EXPECT_TRUE(CutMP3File(input.c_str(), output.c_str(), startFrames * kFrameSeconds,
                               endFrames * kFrameSeconds, true));
        return TemporaryFolder::Read(output);
    }

    TemporaryFolder m_folder;
};

// Twenty frames of one size: a hundredth begins at the frame that it falls in, the frames being
// spread over the hundredths evenly.
std::string EvenSeekTable(unsigned int frames) {
    std::string table;
    for (unsigned int slot = 0; slot < CXINGHeader::kTableEntries; ++slot) {
        const unsigned int frame = slot * frames / CXINGHeader::kTableEntries;
        table += static_cast<char>(frame * 256 / frames);
    }
    return table;
}

TEST_F(VBRRewrite, EveryFieldThatTheFlagsDeclareAndNoOther) {
    for (unsigned int flags = 0; flags < 16; ++flags) {
        for (const char* identifier : {"Xing", "Info"}) {
            SCOPED_TRACE(std::string(identifier) + " " + std::to_string(flags));
            const auto source = Mp3Builder()
                                    .Id3v2(77)
                                    .Xing(flags, 1000, 999999, 57, identifier)
                                    .Lame("LAME3.99r", 0x13, 160, 128)
                                    .Frames(30);
            const bool hasCount = (flags & 1) != 0;
            const bool hasBytes = (flags & 2) != 0;

            std::string fields;
            if (hasCount) {
                fields += BigEndian(20);
            }
            if (hasBytes) {
                fields += BigEndian(20 * kFrameBytes);
            }
            // The table can be made where a byte count is known, or was worked out beside a frame
            // count.
            if ((flags & 4) != 0 && (hasCount || hasBytes)) {
                fields += EvenSeekTable(20);
            }
            std::string expected = source.Bytes().substr(0, source.FrameExtents()[0].End());
            expected.replace(static_cast<std::size_t>(source.VbrHeaderOffset()) + 8, fields.size(),
                             fields);
            const std::string output = Keep(source, 5.5F, 23.5F);
            EXPECT_EQ(output.substr(0, expected.size()), expected);
            EXPECT_EQ(output.size(), expected.size() + 20 * kFrameBytes);
        }
    }
}

TEST_F(VBRRewrite, ARangeWithoutFramesCountsNone) {
    const auto source = Mp3Builder().Xing(3, 30, 30 * kFrameBytes).Lame("LAME3.99r").Frames(30);
    const std::string output = Keep(source, 100.0F, 110.0F);
    ASSERT_EQ(output.size(), source.FrameExtents()[0].size);
    EXPECT_EQ(output.substr(static_cast<std::size_t>(source.VbrHeaderOffset()) + 8, 8),
              BigEndian(0) + BigEndian(0));
}

TEST_F(VBRRewrite, ACountThatWasNotKnownStaysSo) {
    const auto source = Mp3Builder().Xing(3, 0, 30 * kFrameBytes).Lame("LAME3.99r").Frames(30);
    const std::string output = Keep(source, 0.0F, 8.5F);
    EXPECT_EQ(output.substr(static_cast<std::size_t>(source.VbrHeaderOffset()) + 8, 8),
              BigEndian(0) + BigEndian(10 * kFrameBytes));
}

TEST_F(VBRRewrite, CountsOfAVBRIHeaderButNotItsTable) {
    VbriFields fields;
    fields.byteCount = 30 * kFrameBytes;
    fields.frameCount = 30;
    fields.entries = std::vector<unsigned int>(11, 3 * kFrameBytes);
    const auto source = Mp3Builder().Id3v2(5).Vbri(fields).Frames(30);
    std::string expected = source.Bytes().substr(0, source.FrameExtents()[0].End());
    expected.replace(static_cast<std::size_t>(source.VbrHeaderOffset()) + 10, 8,
                     BigEndian(10 * kFrameBytes) + BigEndian(10));
    EXPECT_EQ(Keep(source, 0.0F, 8.5F).substr(0, expected.size()), expected);
}

TEST_F(VBRRewrite, AFrameCountThatIsTooSmallLimitsWhatIsCutOut) {
    const std::string input = m_folder.Path("source.mp3");
    const std::string output = m_folder.Path("output.mp3");
    const auto source = Mp3Builder().Xing(15, 4, 4 * kFrameBytes).Lame("LAME3.99r").Frames(30);
    source.WriteTo(input);
    // Ten frames out of four leave a total below zero: the frames before the range, no seek table.
    EXPECT_TRUE(CutMP3File(input.c_str(), output.c_str(), 2.5F * kFrameSeconds,
                           12.5F * kFrameSeconds, false));
    const std::string bytes = TemporaryFolder::Read(output);
    EXPECT_EQ(bytes.size(), 4 * kFrameBytes);
    EXPECT_EQ(bytes.substr(static_cast<std::size_t>(source.VbrHeaderOffset()) + 8, 108),
              BigEndian(3) + BigEndian(3 * kFrameBytes) + std::string(100, '\0'));
}

TEST(LittleEndianToBigEndian, ReversesTheBytes) {
    EXPECT_EQ(LittleEndianToBigEndian(0x01020384U), 0x84030201U);
}

} // namespace
