#include "mpeg/LameTag.h"
#include "mpeg/MPAFrame.h"
#include "mpeg/VBRIHeader.h"
#include "mpeg/XINGHeader.h"
#include "tests/mpeg/MemoryStream.h"
#include "tests/support/Mp3Builder.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace {

// The VBR header in the first frame of a built file.
template <typename Header = CVBRHeader>
class HeaderOf {
public:
    explicit HeaderOf(const Mp3Builder& file)
        : m_stream(file.Bytes()),
          m_frame(&m_stream, file.FrameExtents()[0].offset, false, true, false, nullptr),
          m_header(m_frame.FindVBRHeader()) {}

    const Header* operator->() const { return dynamic_cast<const Header*>(m_header.get()); }
    explicit operator bool() const { return operator->() != nullptr; }

private:
    MemoryStream m_stream;
    CMPAFrame m_frame;
    std::unique_ptr<CVBRHeader> m_header;
};

// 100 seconds.
VbriFields Vbri(unsigned int entrySize, std::vector<unsigned int> entries) {
    return {1, 65535, 80, 10'000, 3829, 1, 10, entrySize, std::move(entries)};
}

TEST(CXINGHeader, ReadsTheFieldsThatItsFlagsDeclare) {
    for (unsigned int i = 0; i < 128; ++i) {
        SCOPED_TRACE(i);
        const unsigned int flags = i & 15U;
        const bool isLSF = (i & 16U) != 0;
        Mp3Builder file;
        file.Format({isLSF ? 2U : 3U, 3, 128, isLSF ? 22050U : 44100U, (i & 32U) != 0 ? 3U : 0U});
        file.Xing(flags, 0xFEDCBA98, 0x89ABCDEF, 0xF0000001, (i & 64U) != 0 ? "Info" : "Xing");
        const HeaderOf<CXINGHeader> header(file);
        ASSERT_TRUE(header);
        EXPECT_EQ(header->GetOffset(), file.VbrHeaderOffset());
        EXPECT_EQ(header->ReadFlags(), flags);
        EXPECT_EQ(header->GetFrameCount(), (flags & 1U) != 0 ? 0xFEDCBA98 : 0);
        EXPECT_EQ(header->GetByteCount(), (flags & 2U) != 0 ? 0x89ABCDEF : 0);
        EXPECT_EQ(header->GetQuality(), (flags & 8U) != 0 ? 0xF0000001 : 0);
        ASSERT_EQ(header->GetTableSize(), (flags & 4U) != 0 ? 100U : 0U);
        if ((flags & 4U) != 0) {
            EXPECT_EQ(header->GetSeekTable()[0], 0U);
            EXPECT_EQ(header->GetSeekTable()[99], 253U);
            EXPECT_EQ(header->GetRewriteTable()[99], 0U);
        }
    }
}

TEST(CVBRHeader, PrefersXingAndNeedsAnIdentifier) {
    const Mp3Builder both = Mp3Builder().Format({.channelMode = 3}).Xing(0).Patch(36, "VBRI");
    EXPECT_TRUE(HeaderOf<CXINGHeader>(both));
    EXPECT_FALSE(HeaderOf<>(Mp3Builder().Frames(1).Patch(35, "Xing")));
}

TEST(CLAMETag, NamesEncoderAndMethod) {
    const HeaderOf<CXINGHeader> newer(Mp3Builder().Xing(15).Lame("LAME3.90.", 0x98, 195, 128));
    const CLAMETag& tag = *newer->GetLAMETag();
    EXPECT_EQ(tag.GetEncoder(), "LAME3.90");
    EXPECT_FLOAT_EQ(tag.GetVersion(), 3.9F);
    EXPECT_EQ(tag.GetRevision(), 0x90);
    EXPECT_STREQ(tag.GetVBRInfo(), "CBR2Pass");
    EXPECT_TRUE(tag.IsCBR() && !tag.IsABR() && !tag.IsVBR());
    EXPECT_EQ(tag.GetLowpassHz(), 19500U);
    EXPECT_EQ(tag.GetBitrateKbps(), 128);

    const HeaderOf<CXINGHeader> simple(Mp3Builder().Xing(15).Lame("LAME3.100 (reads 10)"));
    EXPECT_TRUE(simple->GetLAMETag()->IsSimpleTag());
    EXPECT_EQ(simple->GetLAMETag()->GetEncoder(), "LAME3.100 (reads 10)");
    const HeaderOf<CXINGHeader> unknown(Mp3Builder().Xing(15).Lame("LAME3.99r", 0x0C));
    EXPECT_STREQ(unknown->GetLAMETag()->GetVBRInfo(), "Unknown");
}

TEST(CVBRHeader, CutShortItIsTheEndOfTheFile) {
    const std::pair<Mp3Builder, unsigned int> cases[] = {
        {Mp3Builder().Xing(15).Lame("LAME3.99r"), 36 + 120 + 21},
        {Mp3Builder().Vbri(Vbri(2, std::vector<unsigned int>(150, 7))), 36 + 26 + 300}};
    for (const auto& [file, neededBytes] : cases) {
        for (unsigned int size = 4; size <= neededBytes; ++size) {
            const Mp3Builder cut =
                Mp3Builder(file).Truncate(static_cast<unsigned int>(file.Size()) - size);
            EXPECT_EQ(ErrorOf([&] { HeaderOf<> header(cut); }).has_value(), size < neededBytes);
        }
    }
}

TEST(CVBRIHeader, ReadsTablesOfAnyEntrySizeAndNumber) {
    for (const unsigned int size : {0U, 1U, 2U, 4U, 5U, 65535U}) {
        SCOPED_TRACE(size);
        const unsigned int entries = size == 65535 ? 2 : 65536;
        const HeaderOf<CVBRIHeader> header(
            Mp3Builder().Vbri(Vbri(size, std::vector<unsigned int>(entries, 0xA5))));
        ASSERT_TRUE(header);
        EXPECT_EQ(header->GetByteCount(), 10'000U);
        EXPECT_EQ(header->GetFrameCount(), 3829U);
        EXPECT_EQ(header->GetPlayingTime(), 100U);
        ASSERT_EQ(header->GetTableSize(), size <= 4 ? entries : 0);
        if (size <= 4) {
            EXPECT_EQ(header->GetSeekTable()[entries - 1], size == 0 ? 0U : 0xA5U);
            EXPECT_EQ(header->GetRewriteTable()[entries - 1], 0U);
        }
    }
}

TEST(CVBRHeader, SeeksInItsTable) {
    // Evenly through the bytes; in 10 entries of 10 frames, each a second and 100 bytes.
    const HeaderOf<> xing(Mp3Builder().Xing(6, 0, 25'600));
    const HeaderOf<> vbri(Mp3Builder().Vbri(Vbri(2, std::vector(10, 1000U))));
    const float percents[][2] = {{-5, 0}, {10.25F, 10.25F}, {150, 99}};
    const unsigned int positions[][2] = {{0, 0}, {2575, 1000}, {25'300, 9900}};
    for (int i = 0; i < 3; ++i) {
        float percent = percents[i][0];
        unsigned int position = 0;
        EXPECT_TRUE(vbri->SeekPosition(percent, position));
        EXPECT_EQ(position, positions[i][1]);
        EXPECT_TRUE(xing->SeekPosition(percent, position));
        EXPECT_EQ(position, positions[i][0]);
        EXPECT_EQ(percent, percents[i][1]);
        EXPECT_FALSE(HeaderOf<>(Mp3Builder().Xing(4))->SeekPosition(percent, position));
    }
}

} // namespace
