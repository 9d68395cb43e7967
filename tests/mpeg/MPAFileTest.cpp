#include "mpeg/MPAFile.h"

#include "tests/support/Mp3Builder.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

using enum CMPAFile::GetType;

std::vector<Extent> Walk(const std::string& path, CMPAFile::GetType first, CMPAFile::GetType next) {
    CMPAFile file(path.c_str());
    std::vector<Extent> found;
    CMPAFrame* frame = file.GetFrame(first, nullptr, true, 0);
    while (frame != nullptr) {
        found.push_back({frame->GetOffset(), frame->GetSize()});
        frame = file.GetFrame(next, frame, true, 0);
    }
    return found;
}

TEST(CMPAFile, WalksOverTheFramesFromEitherEnd) {
    const Mp3Builder files[] = {
        Mp3Builder().Frames(1),
        Mp3Builder().Id3v2(1000).Xing(15, 12).Frames(12).Ape(40).Id3v1(),
        Mp3Builder().Frames(3).Format({.bitrateKbps = 320, .isPadded = true}).Frames(200),
        Mp3Builder().Format({.layer = 1, .isPadded = true}).Frames(9).Lyrics3v2(30),
        Mp3Builder().Format({2, 3, 8, 24000, 3}).Frames(20).Id3v1(), // the shortest there are
        Mp3Builder().Garbage(100).Frames(2).Garbage(500).Frames(2).Garbage(3).Frames(2),
        Mp3Builder().Frames(2).Truncate(2).Frames(3), // the next header comes early
        Mp3Builder().Ape(9).Patch(12, std::string(12, '\0')).Frames(2), // a tag of no size
        Mp3Builder().Frames(2).Lyrics3v2(100).Patch(-15, "-00009"),
        // Backwards never into another stream, nor onto a frame cut short.
        Mp3Builder().Frames(3).Garbage(7).Format({2, 3, 64, 22050, 3}).Frames(3).Truncate(50),
    };
    const TemporaryFolder folder;
    for (const Mp3Builder& file : files) {
        SCOPED_TRACE(&file - files);
        const std::string path = folder.Write("in.mp3", file.Bytes());
        std::vector<Extent> expected = file.FrameExtents();
        EXPECT_EQ(Walk(path, First, Next), expected);
        if (&file != std::end(files) - 1) {
            std::reverse(expected.begin(), expected.end());
            EXPECT_EQ(Walk(path, Last, Prev), expected);
        }
    }
}

} // namespace
