#include "mpeg/Tags.h"

#include "tests/mpeg/MemoryStream.h"
#include "tests/support/Mp3Builder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace {

TEST(CTags, FindsEveryKindBesideEveryOtherAtBothEnds) {
    const std::vector<std::tuple<const char*, int, Mp3Builder>> kinds[] = {
        {
            // at the start; the number is a hundredfold of the version
            {"ID3", 230, Mp3Builder().Id3v2(300'000)},
            {"ID3", 240, Mp3Builder().Id3v2(0, true)},
            {"APE", 200, Mp3Builder().Ape(77)},
        },
        {
            // at the end
            {"ID3", 100, Mp3Builder().Id3v1()},
            {"ID3", 110, Mp3Builder().Id3v1(7)},
            {"ID3", 240, Mp3Builder().Id3v2(500, true)},
            {"APE", 200, Mp3Builder().Ape(200)},
            {"APE", 100, Mp3Builder().Ape(70, false, 1000)},
            {"Lyrics3", 100, Mp3Builder().Lyrics3v1(5089)}, // the longest there is
            {"Lyrics3", 200, Mp3Builder().Lyrics3v2(112)},
            {"MM", 305, Mp3Builder().MusicMatch(0)},
            {"MM", 305, Mp3Builder().MusicMatch(300, 8004, true)},
            {"MM", 305, Mp3Builder().MusicMatch(5, 8132)},
            {"MM", 300, Mp3Builder().MusicMatch(9, 7868, true)},
        }};
    Mp3Builder file;
    std::vector<std::tuple<std::string, int, long long, unsigned int, bool>> expected;
    for (const bool isAppended : {false, true}) {
        for (const auto& first : kinds[isAppended]) {
            for (const auto& second : kinds[isAppended]) {
                for (const auto& [name, version, tag] : {first, second}) {
                    expected.emplace_back(name, version, file.Size(), tag.Size(), isAppended);
                    file.Raw(tag.Bytes());
                }
            }
        }
        // Found from the end backwards, then from the start on.
        std::reverse(expected.begin(), expected.end());
        file.Frames(isAppended ? 0 : 2);
    }
    MemoryStream stream(file.Bytes());
    const CTags tags(&stream);
    EXPECT_EQ(tags.GetBeginOffset(), file.FrameExtents().front().offset);
    EXPECT_EQ(tags.GetEndOffset(), file.FrameExtents().back().End());
    decltype(expected) found;
    for (unsigned int index = 0; const CTag* tag = tags.GetNextTag(index);) {
        found.emplace_back(tag->GetName(), std::lround(100 * tag->GetVersion()), tag->GetOffset(),
                           tag->GetSize(), tag->IsAppended());
    }
    EXPECT_EQ(found, expected);
}

TEST(CTags, RefusesOrPassesOverDamagedTags) {
    const Mp3Builder audio = Mp3Builder().Frames(2);
    constexpr int kEnd = Failure(CMPAException::NoFrameBeforeEOF);
    constexpr int kCorrupt = Failure(CMPAException::CorruptLyrics3Tag);
    constexpr int kTooMany = Failure(CMPAException::NoFrameWithinTolerance);
    const std::string most(4, '\xFF');
    const std::string zeros(12, '\0');
    Mp3Builder thousands;
    for (int i = 0; i < 20'000; ++i) {
        thousands.Id3v1();
    }
    const std::pair<Mp3Builder, int> cases[] = {
        // the file, and how many bytes of tags are found or which failure as a negative number
        {Mp3Builder().Id3v2(100, true).Patch(6, most).Frames(2), kEnd},
        {Mp3Builder().Id3v2(100, true).Patch(6, zeros.substr(8)).Frames(2), 20},
        {Mp3Builder(audio).Id3v2(100, true).Patch(-4, most), kEnd},
        {Mp3Builder().Ape(100).Patch(12, most).Frames(2), kEnd}, // wraps with its header
        {Mp3Builder().Ape(100).Patch(12, zeros).Frames(2), 0},   // no size at all
        {Mp3Builder(audio).Ape(100).Patch(-20, most), kEnd},
        {Mp3Builder(audio).Ape(100).Patch(-20, zeros), kEnd}, // would begin behind itself
        {Mp3Builder(audio).Ape(100).Patch(-20, LittleEndian(2 * 417 + 132 + 1)), kEnd}, // at -1
        {Mp3Builder(audio).Ape(100).Patch(-20, LittleEndian(2 * 417 - 68)), 2 * 417 - 36},
        {Mp3Builder(audio).Lyrics3v1(5090), kCorrupt}, // too far from the end
        {Mp3Builder(audio).Lyrics3v1(5090).Patch(835, "LYRICSBEGIN"), 5109},
        {Mp3Builder(audio).Lyrics3v2(100).Patch(-15, "999999"), kEnd},
        {Mp3Builder(audio).Lyrics3v2(100).Patch(-15, "-00009"), 0},
        {Mp3Builder(audio).MusicMatch(10).Patch(-324 - 7936, "?"), 0}, // cannot be measured
        {Mp3Builder(audio).MusicMatch(10).Patch(-68, most), kEnd},
        {Mp3Builder(audio).MusicMatch(10).Patch(-56, most), kEnd},
        {Mp3Builder(audio).MusicMatch(10).Patch(-16, "3.x "), 10 + 7868 + 324},
        {thousands, kTooMany},
    };
    for (const auto& entry : cases) {
        SCOPED_TRACE(&entry - cases);
        const Mp3Builder& file = entry.first;
        MemoryStream stream(file.Bytes());
        long long tagBytes = 0;
        const auto error = ErrorOf([&] {
            const CTags tags(&stream);
            tagBytes = file.Size() - (tags.GetEndOffset() - tags.GetBeginOffset());
        });
        EXPECT_EQ(error ? Failure(*error) : tagBytes, entry.second);
    }
}

} // namespace
