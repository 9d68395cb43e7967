#include "mpeg/Tags.h"

#include "tests/mpeg/MemoryStream.h"
#include "tests/support/Mp3Builder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

namespace {

using Step = std::function<void(Mp3Builder&)>;

struct Kind {
    const char* name;
    float version;
    Step append;
};

const std::vector<Kind> kTrailing = {
    {"ID3", 1.0F, [](Mp3Builder& file) { file.Id3v1(); }},
    {"ID3", 1.1F, [](Mp3Builder& file) { file.Id3v1(7); }},
    {"ID3", 2.4F, [](Mp3Builder& file) { file.Id3v2(500, true); }},
    {"APE", 2.0F, [](Mp3Builder& file) { file.Ape(200); }},
    {"APE", 1.0F, [](Mp3Builder& file) { file.Ape(70, false, 1000); }},
    {"Lyrics3", 1.0F, [](Mp3Builder& file) { file.Lyrics3v1(5089); }}, // the longest there is
    {"Lyrics3", 2.0F, [](Mp3Builder& file) { file.Lyrics3v2(112); }},
    {"MM", 3.05F, [](Mp3Builder& file) { file.MusicMatch(0); }},
    {"MM", 3.05F, [](Mp3Builder& file) { file.MusicMatch(300, 8004, true); }},
    {"MM", 3.05F, [](Mp3Builder& file) { file.MusicMatch(5, 8132); }},
    {"MM", 3.0F, [](Mp3Builder& file) { file.MusicMatch(9, 7868, true); }},
};
const std::vector<Kind> kLeading = {
    {"ID3", 2.3F, [](Mp3Builder& file) { file.Id3v2(300'000); }},
    {"ID3", 2.4F, [](Mp3Builder& file) { file.Id3v2(0, true); }},
    {"APE", 2.0F, [](Mp3Builder& file) { file.Ape(77); }},
};

// The tags stand in the file in this order, the first few of them before its frames.
void ExpectFound(const std::vector<Kind>& kinds, std::size_t leading) {
    Mp3Builder file;
    for (std::size_t i = 0; i <= kinds.size(); ++i) {
        file.Frames(i == leading ? 2 : 0);
        if (i < kinds.size()) {
            kinds[i].append(file);
        }
    }
    MemoryStream stream(file.Bytes());
    const CTags tags(&stream);
    EXPECT_EQ(tags.GetBeginOffset(), file.FrameExtents().front().offset);
    EXPECT_EQ(tags.GetEndOffset(), file.FrameExtents().back().End());
    unsigned int index = 0;
    while (const CTag* tag = tags.GetNextTag(index)) {
        ASSERT_LE(index, kinds.size());
        // Found from the end backwards, then from the start on.
        const std::size_t place = index <= kinds.size() - leading
                                      ? kinds.size() - index
                                      : index - 1 - (kinds.size() - leading);
        EXPECT_EQ(tag->GetName(), kinds[place].name);
        EXPECT_FLOAT_EQ(tag->GetVersion(), kinds[place].version);
        EXPECT_EQ((Extent{tag->GetOffset(), tag->GetSize()}), file.TagExtents()[place]);
        EXPECT_EQ(tag->IsAppended(), place >= leading);
    }
    EXPECT_EQ(index, kinds.size() + 1);
}

TEST(CTags, FindsEveryKindInEveryOrderAtBothEnds) {
    ExpectFound({}, 0);
    for (const Kind& first : kTrailing) {
        ExpectFound({first}, 0);
        for (const Kind& second : kTrailing) {
            ExpectFound({kLeading[1], first, second}, 1);
        }
    }
    for (const Kind& first : kLeading) {
        ExpectFound({first}, 1);
        for (const Kind& second : kLeading) {
            ExpectFound({first, second, kTrailing[3], kTrailing[6], kTrailing[0]}, 2);
        }
    }
}

// How many bytes of tags are found, or the failure as a negative number.
long long TagBytes(const Mp3Builder& file) {
    try {
        MemoryStream stream(file.Bytes());
        const CTags tags(&stream);
        return file.Size() - (tags.GetEndOffset() - tags.GetBeginOffset());
    } catch (const CMPAException& exception) {
        return -static_cast<long long>(exception.GetErrorID());
    }
}

TEST(CTags, RefusesOrPassesOverDamagedTags) {
    const Step id3v2 = [](Mp3Builder& file) { file.Id3v2(100, true); };
    const Step ape = [](Mp3Builder& file) { file.Ape(100); };
    const Step lyrics1 = [](Mp3Builder& file) { file.Lyrics3v1(5090); };
    const Step lyrics2 = [](Mp3Builder& file) { file.Lyrics3v2(100); };
    const Step musicMatch = [](Mp3Builder& file) { file.MusicMatch(10); };
    constexpr long long kRefused = -static_cast<long long>(CMPAException::NoFrameBeforeEOF);
    constexpr long long kCorrupt = -static_cast<long long>(CMPAException::CorruptLyrics3Tag);
    const std::string most(4, '\xFF');
    const std::string none(4, '\0');
    const struct {
        bool appended;
        Step tag;
        long long offset; // of the damage, from the tag's end where negative
        std::string bytes;
        long long tagBytes;
    } cases[] = {
        {false, id3v2, 6, most, kRefused},
        {false, id3v2, 6, none, 20},
        {true, id3v2, -4, most, kRefused},
        {false, ape, 12, most, kRefused},        // wraps with its header
        {false, ape, 12, none + none + none, 0}, // no size at all
        {true, ape, -20, most, kRefused},
        {true, ape, -20, none + none + none, kRefused},              // would begin behind itself
        {true, ape, -20, LittleEndian(2 * 417 + 132 + 1), kRefused}, // would begin at -1
        {true, ape, -20, LittleEndian(2 * 417 - 68), 2 * 417 - 36},
        {true, lyrics1, 0, "LYRICSBEGIN", kCorrupt}, // too far from the end
        {true, lyrics1, 1, "LYRICSBEGIN", 5109},
        {true, lyrics2, -15, "999999", kRefused},
        {true, lyrics2, -15, "-00009", 0},
        {true, musicMatch, -324 - 7936, "?", 0}, // cannot be measured
        {true, musicMatch, -68, most, kRefused},
        {true, musicMatch, -56, most, kRefused},
        {true, musicMatch, -16, "3.x ", 10 + 7868 + 324},
    };
    for (const auto& [appended, tag, offset, bytes, tagBytes] : cases) {
        SCOPED_TRACE(testing::Message() << offset << testing::PrintToString(bytes));
        Mp3Builder file;
        file.Frames(appended ? 2 : 0);
        tag(file);
        const Extent extent = file.TagExtents().front();
        file.Frames(2).Patch(offset < 0 ? extent.End() + offset : extent.offset + offset, bytes);
        file.Truncate(appended ? 2 * 417 : 0);
        EXPECT_EQ(TagBytes(file), tagBytes);
    }
}

TEST(CTags, NumberOfTagsIsBounded) {
    for (const Kind& kind : {kLeading[1], kTrailing[0]}) {
        Mp3Builder file;
        for (int i = 0; i < 20'000; ++i) {
            kind.append(file);
        }
        EXPECT_LT(TagBytes(file), 0) << kind.name;
    }
}

} // namespace
