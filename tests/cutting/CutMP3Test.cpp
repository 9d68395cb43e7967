#include "cutting/CutMP3.h"

#include "cutting/OutputFile.h"
#include "mpeg/MPAFile.h"
#include "tests/support/AlertRecorder.h"
#include "tests/support/Mp3Builder.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

namespace {

constexpr float kFrameSeconds = 1152.0F / 44100.0F;
constexpr unsigned int kAllFields = 15;

using Numbers = std::vector<std::size_t>;

Numbers FromTo(std::size_t first, std::size_t last) {
    Numbers numbers(last + 1 - first);
    std::iota(numbers.begin(), numbers.end(), first);
    return numbers;
}

Numbers operator+(Numbers a, const Numbers& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

std::string FramesOf(const Mp3Builder& source, const Numbers& numbers) {
    std::string bytes;
    for (const std::size_t number : numbers) {
        bytes += source.BytesOf(source.FrameExtents().at(number));
    }
    return bytes;
}

// Which frames of the source a piece of a cut consists of; an unknown one ends the list with 999.
Numbers NumbersIn(const std::string& bytes, const Mp3Builder& source) {
    Numbers numbers;
    for (std::size_t position = 0; position < bytes.size();) {
        const auto& frames = source.FrameExtents();
        const auto found = std::find_if(frames.begin(), frames.end(), [&](const Extent& frame) {
            return bytes.compare(position, frame.size, source.BytesOf(frame)) == 0;
        });
        if (found == frames.end()) {
            numbers.push_back(999);
            break;
        }
        numbers.push_back(static_cast<std::size_t>(found - frames.begin()));
        position += found->size;
    }
    return numbers;
}

class CutMP3 : public testing::Test {
protected:
    std::string Cut(const Mp3Builder& source, float start, float end, bool keep) {
        source.WriteTo(m_source);
        EXPECT_TRUE(CutMP3File(m_source.c_str(), m_output.c_str(), start, end, keep))
            << m_alerts.texts << CutFailure();
        EXPECT_EQ(TemporaryFolder::Read(m_source), source.Bytes());
        return TemporaryFolder::Read(m_output);
    }

    TemporaryFolder m_folder;
    AlertRecorder m_alerts;
    std::string m_source = m_folder.Path("source.mp3");
    std::string m_output = m_folder.Path("output.mp3");
};

struct RangeCase {
    const char* name;
    float startFrames;
    float endFrames;
    bool keep;
    Numbers expected; // of twelve frames behind frame 0
};

TEST_F(CutMP3, WritesWholeFramesOfTheRangeOrOfTheRest) {
    const RangeCase cases[] = {
        {"both ends inside frames", 2.5F, 4.5F, true, FromTo(3, 6)},
        {"a point inside a frame", 3.5F, 3.5F, true, FromTo(4, 5)},
        {"everything", 0.0F, 100.0F, true, FromTo(1, 12)},
        {"a point at the start", 0.0F, 0.0F, true, FromTo(1, 1)},
        {"behind the end", 50.0F, 60.0F, true, {}},
        {"a negative start", -2.5F, 1.5F, true, FromTo(1, 6)},
        {"times beyond every number of frames", 0.0F, 1e38F, true, FromTo(1, 12)},
        {"the middle cut out, both boundary frames stay", 2.5F, 6.5F, false,
         FromTo(1, 3) + FromTo(8, 11)},
        {"less than a frame cut out", 2.25F, 2.75F, false, FromTo(1, 11)},
        {"from the start", 0.0F, 3.5F, false, FromTo(1, 1) + FromTo(5, 11)},
        {"from before the start", -1.5F, 3.5F, false, FromTo(6, 11)},
        {"to behind the end", 8.5F, 40.0F, false, FromTo(1, 9)},
        {"everything cut out", 0.0F, 1e38F, false, FromTo(1, 1)},
    };
    const auto withHeader =
        Mp3Builder().Xing(kAllFields, 12, 12 * 417).Lame("LAME3.99r").Frames(12);
    const auto withoutHeader = Mp3Builder().Frames(13);
    for (const RangeCase& c : cases) {
        SCOPED_TRACE(c.name);
        const float start = c.startFrames * kFrameSeconds;
        const float end = c.endFrames * kFrameSeconds;
        const std::string header = withHeader.BytesOf(withHeader.FrameExtents().at(0));
        const std::string cut = Cut(withHeader, start, end, c.keep);
        EXPECT_EQ(NumbersIn(cut.substr(header.size()), withHeader), c.expected);
        // Frame 0 is then an ordinary frame, and is left out all the same.
        EXPECT_EQ(NumbersIn(Cut(withoutHeader, start, end, c.keep), withoutHeader), c.expected);
    }
}

TEST_F(CutMP3, KeepsTheTagsOfBothEndsInTheirOrderAndDropsGarbage) {
    const auto source = Mp3Builder()
                            .Id3v2(1000)
                            .Ape(70000) // more than is copied at once
                            .Xing(kAllFields, 6, 6 * 417)
                            .Lame("LAME3.99r")
                            .Frames(2)
                            .Garbage(500)
                            .Frames(4)
                            .Ape(200)
                            .Lyrics3v2(123)
                            .Id3v1(7);
    const std::string output = Cut(source, 0.0F, 1.0F, true);
    const auto& tags = source.TagExtents();
    const std::string leading = source.BytesOf(tags[0]) + source.BytesOf(tags[1]);
    const std::string trailing =
        source.BytesOf(tags[2]) + source.BytesOf(tags[3]) + source.BytesOf(tags[4]);
    const Extent header = source.FrameExtents()[0];
    EXPECT_EQ(output.substr(0, leading.size()), leading);
    EXPECT_EQ(output.substr(leading.size() + header.size),
              FramesOf(source, FromTo(1, 6)) + trailing);
}

TEST_F(CutMP3, CopiesFramesOfEveryFormatAtTheirFullSize) {
    for (const FrameFormat& format :
         {FrameFormat{.layer = 1, .bitrateKbps = 32, .rateHz = 48000},
          FrameFormat{.layer = 2, .bitrateKbps = 192, .isPadded = true},
          FrameFormat{.version = 2, .bitrateKbps = 8, .rateHz = 24000},
          FrameFormat{.version = 0, .bitrateKbps = 160, .rateHz = 8000}}) {
        const auto source = Mp3Builder().Format(format).Frames(40);
        EXPECT_EQ(NumbersIn(Cut(source, 0.0F, 100.0F, true), source), FromTo(1, 39));
    }
}

TEST_F(CutMP3, CutsOfARealClipCoverItAndAreWholeFiles) {
    const auto count = [&](float start, float end, bool keep) {
        EXPECT_TRUE(CutMP3File(DEMO_CLIP, m_output.c_str(), start, end, keep));
        CMPAFile file(m_output.c_str());
        EXPECT_EQ(GetFrameCount(&file), CountFrames(&file)); // what the header says is there
        return CountFrames(&file);
    };
    CMPAFile whole(DEMO_CLIP);
    const int frames = CountFrames(&whole);
    EXPECT_EQ(count(0.0F, 1000.0F, true), frames);
    // Neighbouring ranges share the frame that their border lies in, and the one after it.
    EXPECT_EQ(count(0.0F, 13.6F, true) + count(13.6F, 1000.0F, true), frames + 2);
    // A range and the rest share both boundary frames; the last frame is in neither.
    EXPECT_EQ(count(13.6F, 20.7F, true) + count(13.6F, 20.7F, false), frames + 1);
}

} // namespace
