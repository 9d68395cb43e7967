#include "cutting/CutMP3.h"

#include "cutting/CutFailure.h"
#include "tests/support/AlertRecorder.h"
#include "tests/support/Mp3Builder.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>

namespace {

constexpr unsigned int kFrameBytes = 417;
constexpr float kFrameSeconds = 1152.0F / 44100.0F;

// Some frames of the source, by their names: A is its first one.
std::string FramesOf(const Mp3Builder& source, const std::string& names) {
    std::string bytes;
    for (const char name : names) {
        bytes += source.BytesOf(source.FrameExtents()[static_cast<std::size_t>(name - 'A')]);
    }
    return bytes;
}

// The frame of the source's VBR header with these fields of the header changed.
std::string HeaderWith(const Mp3Builder& source, long long offsetInHeader,
                       const std::string& fields) {
    const Extent& frame = source.FrameExtents()[0];
    const long long offset = source.VbrHeaderOffset() - frame.offset + offsetInHeader;
    return source.BytesOf(frame).replace(static_cast<std::size_t>(offset), fields.size(), fields);
}

class CutMP3 : public testing::Test {
protected:
    // Times in frames of the usual format.
    std::string Cut(const Mp3Builder& source, float start, float end, bool keep = true) {
        m_folder.Write("source.mp3", source.Bytes());
        EXPECT_TRUE(CutMP3File(m_source.c_str(), m_output.c_str(), start * kFrameSeconds,
                               end * kFrameSeconds, keep))
            << m_alerts.texts << DescribeFailure(CutFailure());
        return TemporaryFolder::Read(m_output);
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
    const auto xing = Mp3Builder().Xing(15, 12, 12 * kFrameBytes).Lame().Frames(12);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        for (const Mp3Builder& source :
             {xing, Mp3Builder().Vbri(12, 12 * kFrameBytes).Frames(12)}) {
            const std::string output = Cut(source, c.start, c.end, c.keep);
            EXPECT_TRUE(output.substr(kFrameBytes) == FramesOf(source, c.expected));
        }
        // The first frame is then an ordinary one, and is left out all the same.
        const auto plain = Mp3Builder().Frames(13);
        EXPECT_TRUE(Cut(plain, c.start, c.end, c.keep) == FramesOf(plain, c.expected));
    }
}

TEST_F(CutMP3, KeepsTheTagsOfBothEndsInTheirOrderAndDropsGarbage) {
    auto source = Mp3Builder().Id3v2(1000).Ape(70000); // more than is copied at once
    const std::string leading = source.Bytes();
    source.Frames(3).Garbage(500).Frames(4);
    const auto audioEnd = static_cast<std::size_t>(source.Size());
    const std::string trailing = source.Ape(200).Lyrics3v2(123).Id3v1(7).Bytes().substr(audioEnd);
    EXPECT_TRUE(Cut(source, 0.0F, 40.0F) == leading + FramesOf(source, "BCDEFG") + trailing);
}

TEST_F(CutMP3, RewritesEveryXingFieldThatTheFlagsDeclareAndNoOther) {
    for (unsigned int i = 0; i < 64; ++i) {
        SCOPED_TRACE(i);
        const unsigned int flags = i % 16;
        const unsigned int rateDivisor = 1 + i / 16 % 2;
        // The garbage goes, so that the header comes to lie elsewhere than in the source.
        Mp3Builder source;
        source.Format({4 - rateDivisor, 3, 128, 44100 / rateDivisor, i < 32 ? 0U : 3U});
        source.Id3v2(77).Garbage(5).Xing(flags, 1000, 999999, 57, i % 3 == 0 ? "Info" : "Xing");
        source.Lame().Frames(3).Id3v1();
        std::string fields = (flags & 1) != 0 ? BigEndian(1) : "";
        fields += (flags & 2) != 0 ? BigEndian(kFrameBytes) : "";
        // A table takes a byte count, given or worked out from a frame count.
        fields += (flags & 4) != 0 && (flags & 3) != 0 ? std::string(100, '\0') : "";
        const auto& tags = source.TagExtents();
        EXPECT_TRUE(Cut(source, 0.0F, 0.0F) == source.BytesOf(tags[0]) +
                                                   HeaderWith(source, 8, fields) +
                                                   FramesOf(source, "B") + source.BytesOf(tags[1]));
    }
}

TEST_F(CutMP3, TheSeekTableTellsWhereEachHundredthBegins) {
    // So large that 256 times its size needs more than 32 bits.
    const auto source =
        Mp3Builder().Xing(7, 1).Frames(9000).Format({.bitrateKbps = 320}).Frames(15000);
    const long long begin = source.FrameExtents()[1].offset;
    const long long size = source.Size() - begin;
    std::string fields = BigEndian(24000) + BigEndian(static_cast<unsigned int>(size));
    for (std::size_t slot = 0; slot < 100; ++slot) {
        const Extent& frame = source.FrameExtents()[1 + slot * 240];
        fields += static_cast<char>((frame.offset - begin) * 256 / size);
    }
    EXPECT_TRUE(Cut(source, 0.0F, 23998.5F) ==
                HeaderWith(source, 8, fields) + source.Bytes().substr(kFrameBytes));
}

TEST_F(CutMP3, TheSeekTableBeginsWithTheFirstFrame) {
    // A second frame of the first hundredth lies a 256th of the whole behind the first, or further.
    for (const unsigned int frames : {101U, 255U}) {
        const auto source = Mp3Builder().Xing(7, 1).Frames(frames);
        const auto table = static_cast<std::size_t>(source.VbrHeaderOffset()) + 16;
        const std::string output = Cut(source, 0.0F, static_cast<float>(frames) - 1.5F);
        EXPECT_EQ(output.substr(table, 1), std::string(1, '\0')) << frames;
        EXPECT_NE(output.substr(table + 1, 1), std::string(1, '\0')) << frames;
    }
}

TEST_F(CutMP3, RewritesCountsThatWereWrongUnknownOrOfAVBRIHeader) {
    const auto known = Mp3Builder().Xing(3, 30, 30 * kFrameBytes).Lame().Frames(30);
    EXPECT_EQ(Cut(known, 100.0F, 110.0F), HeaderWith(known, 8, BigEndian(0) + BigEndian(0)));

    const auto unknown = Mp3Builder().Xing(3, 0, 30 * kFrameBytes).Lame().Frames(30);
    EXPECT_EQ(Cut(unknown, 0.0F, 0.0F),
              HeaderWith(unknown, 8, BigEndian(0) + BigEndian(kFrameBytes)) +
                  FramesOf(unknown, "B"));

    // Ten frames out of four leave a total below zero: the frames before the range, no seek table.
    const auto wrong = Mp3Builder().Xing(15, 4, 4 * kFrameBytes).Lame().Frames(30);
    const std::string fields = BigEndian(3) + BigEndian(3 * kFrameBytes) + std::string(100, '\0');
    EXPECT_EQ(Cut(wrong, 2.5F, 12.5F, false),
              HeaderWith(wrong, 8, fields) + FramesOf(wrong, "BCD"));

    // Its seek table stays as it is.
    const auto vbri = Mp3Builder().Vbri(3, 9).Frames(3);
    EXPECT_EQ(Cut(vbri, 0.0F, 0.0F),
              HeaderWith(vbri, 10, BigEndian(kFrameBytes) + BigEndian(1)) + FramesOf(vbri, "B"));
}

TEST_F(CutMP3, FailsWhereTheRangeReachesAFrameThatIsCutShort) {
    const auto source = Mp3Builder().Frames(9).Truncate(100);
    EXPECT_TRUE(Cut(source, 0.0F, 5.5F) == FramesOf(source, "BCDEFGH"));
    EXPECT_FALSE(CutMP3File(m_source.c_str(), m_output.c_str(), 0.0F, 5.0F, true));
    EXPECT_TRUE(m_alerts.texts.starts_with("The source ends in the middle of a frame"));
    EXPECT_FALSE(std::filesystem::exists(m_output));
}

TEST_F(CutMP3, WholeFramesLeaveTheStumpOutAndSaySo) {
    const auto plain = Mp3Builder().Id3v2(77).Xing(7, 9, 9 * kFrameBytes).Frames(9).Truncate(100);
    const auto tagged = Mp3Builder().Frames(9).Frames(1).Truncate(100);
    for (const Mp3Builder& source : {plain, tagged}) {
        m_folder.Write("source.mp3", source.Bytes());
        for (const bool keep : {true, false}) {
            const float start = keep ? 4.0F : 0.0F;
            const float end = keep ? 1e9F : 4.0F;
            EXPECT_TRUE(CutMP3WholeFrames(m_source.c_str(), m_output.c_str(), start * kFrameSeconds,
                                          end * kFrameSeconds, keep));
            EXPECT_TRUE(TemporaryFolder::Read(m_output).ends_with(
                keep ? FramesOf(source, "FGHI") : FramesOf(source, "BFGHI")));
            EXPECT_EQ(CutWarnings(), std::vector{CutWarning::LastFrameLeftOut});
        }
    }
    EXPECT_FALSE(CutMP3WholeFrames(m_source.c_str(), m_output.c_str(), 10.0F, 11.0F, true));
    EXPECT_EQ(CutFailure(), (CutProblem{CutReason::NoAudioInRange, m_source}));
    EXPECT_EQ(m_alerts.texts, "");
}

TEST_F(CutMP3, WarnsOfAHeaderThatMiscountsAndOfAnotherFormat) {
    const auto warnings = [&](const Mp3Builder& source, float end, bool keep) {
        m_folder.Write("source.mp3", source.Bytes());
        EXPECT_TRUE(
            CutMP3WholeFrames(m_source.c_str(), m_output.c_str(), 0.0F, end * kFrameSeconds, keep));
        return CutWarnings();
    };
    using Warnings = std::vector<CutWarning>;
    for (const unsigned int count : {0U, 19U, 20U, 21U, 40U}) {
        SCOPED_TRACE(count);
        const auto source = Mp3Builder().Xing(7, count, 9).Frames(20);
        const Warnings all =
            count == 0 || count == 20 ? Warnings() : Warnings{CutWarning::FrameCountWrong};
        EXPECT_EQ(warnings(source, 3.0F, false), all);
        EXPECT_EQ(warnings(source, 1e9F, true), all);
        EXPECT_EQ(warnings(source, 5.0F, true), all);
    }
    const auto joined = Mp3Builder().Frames(9).Garbage(99).Format({.rateHz = 48000}).Frames(9);
    EXPECT_EQ(warnings(joined, 99.0F, true), Warnings{CutWarning::FormatChanges});
}

// What CutMP3File writes is the law for each piece, whatever the others are.
TEST_F(CutMP3, PiecesAreWhatACutOfEachWouldBe) {
    const Mp3Builder sources[] = {
        Mp3Builder().Id3v2(300).Xing(15, 400, 400 * kFrameBytes).Lame().Frames(400).Ape(99).Id3v1(),
        Mp3Builder().Vbri(400, 400 * kFrameBytes).Frames(400),
        Mp3Builder().Frames(200).Garbage(5000).Frames(200).Id3v1(),
    };
    std::mt19937 random(1); // NOLINT(cert-msc32-c, cert-msc51-cpp): the same every time
    for (const Mp3Builder& source : sources) {
        m_folder.Write("source.mp3", source.Bytes());
        std::vector<CutPiece> pieces = {{m_folder.Path("end"), {2.0, 1e9}},
                                        {m_folder.Path("all"), {-1.0, 1e9}}};
        for (int i = 0; i < 60; ++i) {
            const double start = static_cast<double>(random() % 10000) / 1000.0;
            const double length =
                static_cast<double>(random() % 2000) / (i % 2 == 0 ? 1000.0 : 1e4);
            pieces.push_back({m_folder.Path(std::to_string(i)), {start, start + length}});
        }
        ASSERT_TRUE(CutMP3Pieces(m_source.c_str(), pieces)) << DescribeFailure(CutFailure());
        EXPECT_EQ(CutWarnings(), std::vector<CutWarning>());
        for (const auto& [path, range] : pieces) {
            // An end behind the audio means its end.
            const float end = std::min(static_cast<float>(range.end), 400 * kFrameSeconds);
            ASSERT_TRUE(CutMP3File(m_source.c_str(), m_output.c_str(),
                                   static_cast<float>(range.start), end, true));
            EXPECT_TRUE(TemporaryFolder::Read(path) == TemporaryFolder::Read(m_output)) << path;
        }
        pieces.push_back({m_folder.Path("none"), {50.0, 60.0}});
        EXPECT_FALSE(CutMP3Pieces(m_source.c_str(), pieces));
        EXPECT_EQ(CutFailure(), (CutProblem{CutReason::NoAudioInRange, m_source}));
        for (const CutPiece& piece : pieces) {
            EXPECT_FALSE(std::filesystem::exists(piece.path));
        }
    }
}

TEST_F(CutMP3, AllButSeveralRangesKeepsEveryFrameThatTouchesNone) {
    const struct {
        std::vector<CutRange> ranges; // in frames
        const char* expected;         // of twelve frames, B to M, behind the first one
    } cases[] = {
        {{{2.5, 6.5}}, "BCDIJKLM"},
        {{{8.0, 10.0}, {2.5, 4.5}}, "BCDGHIJLM"},
        {{{2.5, 4.5}, {4.5, 6.5}, {3.0, 3.5}}, "BCDIJKLM"},
        {{{0.0, 3.5}, {9.5, 99.0}}, "BFGHIJK"},
        {{{1.2, 1.4}}, "BCDEFGHIJKLM"},
        {{}, "BCDEFGHIJKLM"},
    };
    const auto headed = Mp3Builder().Id3v2(77).Xing(15, 12, 12 * kFrameBytes).Frames(12).Id3v1();
    const auto plain = Mp3Builder().Frames(12);
    for (const auto& c : cases) {
        SCOPED_TRACE(&c - cases);
        std::vector<CutRange> ranges = c.ranges;
        for (CutRange& range : ranges) {
            range.start *= static_cast<double>(kFrameSeconds);
            range.end *= static_cast<double>(kFrameSeconds);
        }
        const auto cut = [&](const Mp3Builder& source) {
            m_folder.Write("source.mp3", source.Bytes());
            EXPECT_TRUE(CutMP3AllBut(m_source.c_str(), m_output.c_str(), ranges));
            EXPECT_EQ(CutWarnings(), std::vector<CutWarning>());
            return TemporaryFolder::Read(m_output);
        };
        const std::string audio = FramesOf(headed, c.expected);
        const auto count = static_cast<unsigned int>(audio.size() / kFrameBytes);
        const std::string output = cut(headed);
        EXPECT_TRUE(output.ends_with(audio + headed.BytesOf(headed.TagExtents()[1])));
        EXPECT_NE(output.find(BigEndian(count) + BigEndian(count * kFrameBytes)),
                  std::string::npos);
        // There the first frame is one like the others.
        std::string names = c.expected;
        std::ranges::for_each(names, [](char& name) { --name; });
        EXPECT_TRUE(cut(plain) == FramesOf(plain, names));
    }
}

} // namespace
