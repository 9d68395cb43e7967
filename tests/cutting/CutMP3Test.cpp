#include "cutting/CutMP3.h"

#include "cutting/OutputFile.h"
#include "mpeg/MPAFile.h"
#include "mpeg/XINGHeader.h"
#include "tests/support/AlertRecorder.h"
#include "tests/support/Mp3Builder.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr unsigned int kFrameBytes = 417;
constexpr float kFrameSeconds = 1152.0F / 44100.0F;

// Which frames of the source some bytes are: A is its first one. '?' for anything else.
std::string NamesOf(const std::string& bytes, const Mp3Builder& source) {
    std::string names;
    for (std::size_t position = 0; position < bytes.size();) {
        const auto& frames = source.FrameExtents();
        const auto found = std::find_if(frames.begin(), frames.end(), [&](const Extent& frame) {
            return bytes.compare(position, frame.size, source.BytesOf(frame)) == 0;
        });
        if (found == frames.end()) {
            return names + '?';
        }
        names += static_cast<char>('A' + (found - frames.begin()));
        position += found->size;
    }
    return names;
}

class CutMP3 : public testing::Test {
protected:
    // Times in frames of the usual format.
    std::string Cut(const Mp3Builder& source, float start, float end, bool keep = true) {
        source.WriteTo(m_source);
        EXPECT_TRUE(CutMP3File(m_source.c_str(), m_output.c_str(), start * kFrameSeconds,
                               end * kFrameSeconds, keep))
            << m_alerts.texts << CutFailure();
        return TemporaryFolder::Read(m_output);
    }

    // The source up to the end of its VBR header's frame, with these fields of the header changed.
    static std::string WithFields(const Mp3Builder& source, std::size_t offsetInHeader,
                                  const std::string& fields) {
        std::string bytes = source.Bytes().substr(0, source.FrameExtents()[0].End());
        return bytes.replace(static_cast<std::size_t>(source.VbrHeaderOffset()) + offsetInHeader,
                             fields.size(), fields);
    }

    TemporaryFolder m_folder;
    AlertRecorder m_alerts;
    std::string m_source = m_folder.Path("source.mp3");
    std::string m_output = m_folder.Path("output.mp3");
};

TEST_F(CutMP3, WritesWholeFramesOfTheRangeOrOfTheRest) {
    const struct {
        const char* name;
        float start;
        float end;
        bool keep;
        const char* expected; // of twelve frames, B to M, behind the first one
    } cases[] = {
        {"both ends inside frames", 2.5F, 4.5F, true, "DEFG"},
        {"a point inside a frame", 3.5F, 3.5F, true, "EF"},
        {"a point at the start", 0.0F, 0.0F, true, "B"},
        {"behind the end", 50.0F, 60.0F, true, ""},
        {"a negative start", -2.5F, 1.5F, true, "BCDEFG"},
        {"times beyond every number of frames", 0.0F, 1e38F, true, "BCDEFGHIJKLM"},
        {"the middle cut out, both boundary frames stay", 2.5F, 6.5F, false, "BCDIJKL"},
        {"less than a frame cut out", 2.25F, 2.75F, false, "BCDEFGHIJKL"},
        {"from the start", 0.0F, 3.5F, false, "BFGHIJKL"},
        {"from before the start", -1.5F, 3.5F, false, "GHIJKL"},
        {"to behind the end", 8.5F, 40.0F, false, "BCDEFGHIJ"},
    };
    const auto withHeader =
        Mp3Builder().Xing(15, 12, 12 * kFrameBytes).Lame("LAME3.99r").Frames(12);
    const auto withoutHeader = Mp3Builder().Frames(13);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string cut = Cut(withHeader, c.start, c.end, c.keep);
        EXPECT_EQ(NamesOf(cut.substr(kFrameBytes), withHeader), c.expected);
        // The first frame is then an ordinary one, and is left out all the same.
        EXPECT_EQ(NamesOf(Cut(withoutHeader, c.start, c.end, c.keep), withoutHeader), c.expected);
    }
}

TEST_F(CutMP3, KeepsTheTagsOfBothEndsInTheirOrderAndDropsGarbage) {
    auto source = Mp3Builder().Id3v2(1000).Ape(70000); // more than is copied at once
    const std::string leading = source.Bytes();
    source.Frames(3).Garbage(500).Frames(4);
    const auto audioEnd = static_cast<std::size_t>(source.Size());
    const std::string trailing = source.Ape(200).Lyrics3v2(123).Id3v1(7).Bytes().substr(audioEnd);
    const std::string output = Cut(source, 0.0F, 40.0F);
    EXPECT_EQ(output.substr(0, leading.size()), leading);
    EXPECT_EQ(output.substr(leading.size() + 6 * kFrameBytes), trailing);
    EXPECT_EQ(NamesOf(output.substr(leading.size(), 6 * kFrameBytes), source), "BCDEFG");
}

TEST_F(CutMP3, CutsOfARealClipCoverItAndAreWholeFiles) {
    const auto count = [&](float start, float end, bool keep) {
        EXPECT_TRUE(CutMP3File(DEMO_CLIP, m_output.c_str(), start, end, keep));
        CMPAFile file(m_output.c_str());
        EXPECT_EQ(GetFrameCount(&file), CountFrames(&file)); // what the header says is there
        return CountFrames(&file);
    };
    const int frames = count(0.0F, 1000.0F, true);
    // Neighbouring ranges share the frame that their border lies in, and the one after it.
    EXPECT_EQ(count(0.0F, 13.6F, true) + count(13.6F, 1000.0F, true), frames + 2);
    // A range and the rest share both boundary frames; the last frame is in neither.
    EXPECT_EQ(count(13.6F, 20.7F, true) + count(13.6F, 20.7F, false), frames + 1);
}

TEST_F(CutMP3, RewritesEveryXingFieldThatTheFlagsDeclareAndNoOther) {
    // Twenty frames of one size: a hundredth begins at the frame that it falls in.
    std::string evenTable;
    for (unsigned int slot = 0; slot < CXINGHeader::kTableEntries; ++slot) {
        evenTable += static_cast<char>(slot / 5 * 256 / 20);
    }
    for (unsigned int flags = 0; flags < 16; ++flags) {
        SCOPED_TRACE(flags);
        const auto source = Mp3Builder()
                                .Id3v2(77)
                                .Xing(flags, 1000, 999999, 57, flags % 3 == 0 ? "Info" : "Xing")
                                .Lame("LAME3.99r", 0x13, 160, 128)
                                .Frames(30);
        std::string fields = (flags & 1) != 0 ? BigEndian(20) : "";
        fields += (flags & 2) != 0 ? BigEndian(20 * kFrameBytes) : "";
        // A table takes a byte count, given or worked out from a frame count.
        fields += (flags & 4) != 0 && (flags & 3) != 0 ? evenTable : "";
        const std::string head = WithFields(source, 8, fields);
        const std::string output = Cut(source, 5.5F, 23.5F);
        EXPECT_EQ(output.substr(0, head.size()), head);
        EXPECT_EQ(output.size(), head.size() + 20 * kFrameBytes);
    }
}

TEST_F(CutMP3, RewritesCountsThatWereWrongUnknownOrOfAVBRIHeader) {
    const auto known = Mp3Builder().Xing(3, 30, 30 * kFrameBytes).Lame("LAME3.99r").Frames(30);
    EXPECT_EQ(Cut(known, 100.0F, 110.0F), WithFields(known, 8, BigEndian(0) + BigEndian(0)));

    const auto unknown = Mp3Builder().Xing(3, 0, 30 * kFrameBytes).Lame("LAME3.99r").Frames(30);
    EXPECT_EQ(Cut(unknown, 0.0F, 8.5F).substr(0, kFrameBytes),
              WithFields(unknown, 8, BigEndian(0) + BigEndian(10 * kFrameBytes)));

    // Ten frames out of four leave a total below zero: the frames before the range, no seek table.
    const auto wrong = Mp3Builder().Xing(15, 4, 4 * kFrameBytes).Lame("LAME3.99r").Frames(30);
    const std::string output = Cut(wrong, 2.5F, 12.5F, false);
    EXPECT_EQ(
        output.substr(0, kFrameBytes),
        WithFields(wrong, 8, BigEndian(3) + BigEndian(3 * kFrameBytes) + std::string(100, '\0')));
    EXPECT_EQ(NamesOf(output.substr(kFrameBytes), wrong), "BCD");

    VbriFields fields;
    fields.byteCount = 30 * kFrameBytes;
    fields.frameCount = 30;
    fields.entries = std::vector<unsigned int>(11, 3 * kFrameBytes); // stays as it is
    const auto vbri = Mp3Builder().Vbri(fields).Frames(30);
    EXPECT_EQ(Cut(vbri, 0.0F, 8.5F).substr(0, kFrameBytes),
              WithFields(vbri, 10, BigEndian(10 * kFrameBytes) + BigEndian(10)));
}

TEST_F(CutMP3, RewritesNothingOfAVBRHeaderThatReachesIntoTheNextFrame) {
    const FrameFormat small{.version = 2, .bitrateKbps = 8, .rateHz = 24000, .channelMode = 3};
    auto source = Mp3Builder().Format(small).Frames(11);
    source.Patch(13, "Xing" + BigEndian(3) + BigEndian(9, 3)); // all that is left of 24 bytes
    const std::string output = Cut(source, 0.0F, 100.0F);
    EXPECT_EQ(output.substr(0, 21), source.Bytes().substr(0, 21));
    EXPECT_EQ(NamesOf(output.substr(24), source), "BCDEFGHIJK");
}

} // namespace
