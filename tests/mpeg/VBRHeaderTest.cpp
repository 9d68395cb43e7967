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
struct HeaderOf {
    explicit HeaderOf(const Mp3Builder& file)
        : stream(file.Bytes()),
          vbrHeader(CMPAFrame(&stream, 0, false, true, false, nullptr).FindVBRHeader()),
          header(dynamic_cast<const Header*>(vbrHeader.get())) {}
    const Header* operator->() const { return header; }

    MemoryStream stream;
    std::unique_ptr<CVBRHeader> vbrHeader;
    const Header* header;
};

// 100 seconds.
VbriFields Vbri(unsigned int entrySize, std::vector<unsigned int> entries) {
    return {1, 65535, 80, 10'000, 3829, 1, 10, entrySize, std::move(entries)};
}

TEST(CXINGHeader, ReadsTheFieldsThatItsFlagsDeclare) {
    for (unsigned int i = 0; i < 64; ++i) {
        SCOPED_TRACE(i);
        const unsigned int flags = i & 15U;
        const unsigned int version = (i & 16U) != 0 ? 2 : 3;
        Mp3Builder file;
        file.Format({version, 3, 128, version == 2 ? 22050U : 44100U, (i & 32U) != 0 ? 3U : 0U});
        file.Xing(flags, 0xFEDCBA98, 0x89ABCDEF, 0xF0000001, i % 3 == 0 ? "Info" : "Xing");
        const HeaderOf<CXINGHeader> header(file);
        ASSERT_NE(header.header, nullptr);
        EXPECT_EQ(header->GetOffset(), file.VbrHeaderOffset());
        EXPECT_EQ(header->ReadFlags(), flags);
        EXPECT_EQ(header->GetFrameCount(), (flags & 1U) != 0 ? 0xFEDCBA98 : 0);
        EXPECT_EQ(header->GetByteCount(), (flags & 2U) != 0 ? 0x89ABCDEF : 0);
        EXPECT_EQ(header->GetQuality(), (flags & 8U) != 0 ? 0xF0000001 : 0);
        ASSERT_EQ(header->GetTableSize(), (flags & 4U) != 0 ? 100U : 0U);
        EXPECT_TRUE((flags & 4U) == 0 || header->GetSeekTable()[99] == 253);
    }
    // A Xing header is preferred where a VBRI header would be; elsewhere it is none.
    const Mp3Builder both = Mp3Builder().Format({.channelMode = 3}).Xing(0).Patch(36, "VBRI");
    EXPECT_NE(HeaderOf<CXINGHeader>(both).header, nullptr);
    EXPECT_EQ(HeaderOf<>(Mp3Builder().Frames(1).Patch(35, "Xing")).header, nullptr);
}

TEST(CLAMETag, NamesEncoderAndMethod) {
    const HeaderOf<CXINGHeader> header(Mp3Builder().Xing(15).Lame("LAME3.90.", 0x98, 195, 128));
    const CLAMETag& tag = *header->GetLAMETag();
    EXPECT_EQ(tag.GetEncoder(), "LAME3.90");
    EXPECT_EQ(tag.GetRevision(), 0x90);
    EXPECT_STREQ(tag.GetVBRInfo(), "CBR2Pass");
    EXPECT_TRUE(tag.IsCBR() && !tag.IsABR() && !tag.IsVBR());
    EXPECT_EQ(tag.GetBitrateKbps(), 128);
    const HeaderOf<CXINGHeader> unknown(Mp3Builder().Xing(15).Lame("LAME3.99r", 0x0C));
    EXPECT_STREQ(unknown->GetLAMETag()->GetVBRInfo(), "Unknown");
}

TEST(CVBRIHeader, ReadsTablesOfAnyEntrySizeAndNumber) {
    for (const unsigned int size : {0U, 1U, 2U, 4U, 5U, 65535U}) {
        SCOPED_TRACE(size);
        const unsigned int entries = size == 65535 ? 2 : 65536;
        const HeaderOf<CVBRIHeader> header(
            Mp3Builder().Vbri(Vbri(size, std::vector<unsigned int>(entries, 0xA5))));
        ASSERT_NE(header.header, nullptr);
        EXPECT_EQ(header->GetByteCount(), 10'000U);
        EXPECT_EQ(header->GetFrameCount(), 3829U);
        EXPECT_EQ(header->GetPlayingTime(), 100U);
        ASSERT_EQ(header->GetTableSize(), size <= 4 ? entries : 0);
        EXPECT_TRUE(size > 4 || header->GetSeekTable()[entries - 1] == (size == 0 ? 0 : 0xA5));
    }
}

TEST(CVBRHeader, SeeksInItsTable) {
    // Evenly through the bytes; in 10 entries of 10 frames, each a second and 100 bytes.
    const HeaderOf<> xing(Mp3Builder().Xing(6, 0, 25'600));
    const HeaderOf<> vbri(Mp3Builder().Vbri(Vbri(2, std::vector(10, 1000U))));
    const HeaderOf<> uncounted(Mp3Builder().Xing(4));
    const struct {
        float percent, found;
        unsigned int xing, vbri;
    } cases[] = {{-5, 0, 0, 0}, {10.25F, 10.25F, 2575, 1000}, {150, 99, 25'300, 9900}};
    for (auto [percent, found, xingPosition, vbriPosition] : cases) {
        unsigned int position = 0;
        EXPECT_TRUE(vbri->SeekPosition(percent, position));
        EXPECT_EQ(position, vbriPosition);
        EXPECT_TRUE(xing->SeekPosition(percent, position));
        EXPECT_EQ(position, xingPosition);
        EXPECT_EQ(percent, found);
        EXPECT_FALSE(uncounted->SeekPosition(percent, position));
    }
}

} // namespace
