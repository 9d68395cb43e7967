#include "mpeg/Tags.h"

#include "tests/mpeg/MemoryStream.h"
#include "tests/support/Mp3Builder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

TEST(CTags, FindsEveryKindBesideEveryOtherAtBothEnds) {
    const std::vector<Mp3Builder> leading = {
        Mp3Builder().Id3v2(300'000),
        Mp3Builder().Id3v2(0, true),
        Mp3Builder().Ape(77),
    };
    const std::vector<Mp3Builder> trailing = {
        Mp3Builder().Id3v1(),
        Mp3Builder().Id3v2(500, true),
        Mp3Builder().Ape(200),
        Mp3Builder().Ape(70, false, 1000),
        Mp3Builder().Ape(70, false, 1000).Patch(-12, {0, 0, 0, '\x80'}), // claims a header in vain
        Mp3Builder().Lyrics3v1(5089),                                    // the longest there is
        Mp3Builder().Lyrics3v2(112),
        Mp3Builder().MusicMatch(0),
        Mp3Builder().MusicMatch(300, 8004, true),
        Mp3Builder().MusicMatch(5, 8132),
        Mp3Builder().MusicMatch(9, 7868, true),
    };
    Mp3Builder file;
    std::vector<Extent> expected;
    for (const auto& kinds : {leading, trailing}) {
        for (const Mp3Builder& first : kinds) {
            for (const Mp3Builder& second : kinds) {
                for (const Mp3Builder& tag : {first, second}) {
                    expected.push_back({file.Size(), static_cast<unsigned int>(tag.Size())});
                    file.Raw(tag.Bytes());
                }
            }
        }
        // Found from the end backwards, then from the start on.
        std::reverse(expected.begin(), expected.end());
        file.Frames(file.FrameExtents().empty() ? 2 : 0);
    }
    MemoryStream stream(file.Bytes());
    const CTags tags(&stream);
    EXPECT_EQ(tags.GetBeginOffset(), file.FrameExtents().front().offset);
    EXPECT_EQ(tags.GetEndOffset(), file.FrameExtents().back().End());
    std::vector<Extent> found;
    for (unsigned int index = 0; const CTag* tag = tags.GetNextTag(index);) {
        EXPECT_EQ(tag->IsAppended(), tag->GetOffset() >= tags.GetEndOffset());
        found.push_back({tag->GetOffset(), tag->GetSize()});
    }
    EXPECT_EQ(found, expected);
}

} // namespace
