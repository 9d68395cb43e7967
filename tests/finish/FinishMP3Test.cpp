#include "finish/FinishMP3.h"

#include "bitstream/CRC.h"
#include "bitstream/FrameFacts.h"
#include "cutting/CutFailure.h"
#include "tests/support/DecodedMP3.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

std::string Read(const std::string& path) {
    return TemporaryFolder::Read(path);
}

std::uint32_t Field(const std::string& bytes, std::size_t offset, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i) {
        value = value << 8 | static_cast<std::uint8_t>(bytes[offset + i]);
    }
    return value;
}

/// Computes anew what the header of a file without tags should tell, and expects that it does.
void ExpectTrueHeader(const std::string& bytes) {
    const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    std::vector<std::size_t> offsets;
    bitstream::FrameFacts facts;
    for (std::size_t at = 0; at + 4 <= bytes.size();) {
        ASSERT_EQ(bitstream::DecodeHeader(data + at, facts), bitstream::HeaderState::Sound);
        offsets.push_back(at);
        at += bitstream::FrameBytes(facts.isLSF, facts.layer, facts.bitrateBps,
                                    facts.samplingRateHz, facts.padding);
    }
    const std::size_t identifier = 4 + facts.SideInfoBytes();
    const std::uint32_t frames = static_cast<std::uint32_t>(offsets.size() - 1);
    EXPECT_EQ(Field(bytes, identifier + 8, 4), frames);
    EXPECT_EQ(Field(bytes, identifier + 12, 4), bytes.size());
    EXPECT_EQ(Field(bytes, identifier + 148, 4), bytes.size());
    for (std::size_t i = 1; i < 100; ++i) {
        const std::size_t entry = 256 * offsets[1 + i * frames / 100] / bytes.size();
        EXPECT_EQ(Field(bytes, identifier + 16 + i, 1), std::min<std::size_t>(entry, 255)) << i;
    }
    bitstream::MusicCRC music;
    music.Add({data + offsets[1], bytes.size() - offsets[1]});
    EXPECT_EQ(Field(bytes, identifier + 152, 2), music.Value());
    bitstream::MusicCRC tag;
    tag.Add({data, identifier + 154});
    EXPECT_EQ(Field(bytes, identifier + 154, 2), tag.Value());
}

class FinishedMP3s : public testing::Test {
protected:
    /// A clip, repeated, so that it is longer and has an end to be joined with its beginning.
    std::string Source(const std::string& clip, int times = 5) {
        const std::string bytes = Read(std::string(KLIPRA_CLIPS) + "/" + clip);
        std::string all;
        for (int i = 0; i < times; ++i) {
            all += bytes;
        }
        return folder.Write("source.mp3", all);
    }
    std::string Path(const std::string& name) const { return folder.Path(name); }

    TemporaryFolder folder;
    const std::vector<std::string> clips{"joint-stereo-44100.mp3", "vbr-xing-48000.mp3",
                                         "mono-8kbps-24000.mp3", "abr-crc-22050.mp3",
                                         "mono-8000.mp3"};
};

TEST_F(FinishedMP3s, PlayTheRangeToTheSampleAndTellTheTruth) {
    for (const std::string& clip : clips) {
        SCOPED_TRACE(clip);
        const std::string source = Source(clip);
        const Decoded whole = Decode(source, false);
        const Decoded music = Decode(source, true);
        const double seconds = static_cast<double>(music.SampleFrames()) / music.rateHz;
        Random random(2);
        for (int i = 0; i < 6; ++i) {
            const double begin = 0.2 + (seconds - 0.5) * 0.001 * random(500);
            const double end = begin + 0.1 + 0.001 * random(200);
            const FinishPiece piece{Path("a.mp3"), {{begin, end}}, true};
            ASSERT_TRUE(FinishMP3(source.c_str(), {&piece, 1}));
            ExpectTrueHeader(Read(piece.path));
            const auto from = static_cast<long long>(begin * whole.rateHz + 1e-6);
            const auto to = static_cast<long long>(end * whole.rateHz + 1e-6);
            EXPECT_LE(Difference(Decode(piece.path, true).samples, whole.Part(from, to)), kRounding)
                << begin << " " << end;
        }
    }
}

TEST_F(FinishedMP3s, PiecesPlayedOnAreTheSource) {
    for (const std::string& clip : clips) {
        SCOPED_TRACE(clip);
        const std::string source = Source(clip, 1);
        const Decoded music = Decode(source, true);
        const double end = static_cast<double>(music.SampleFrames()) / music.rateHz;
        const std::vector<FinishPiece> pieces{{Path("1.mp3"), {{0.0, 0.3 * end}}, true},
                                              {Path("2.mp3"), {{0.3 * end, 0.7 * end}}, true},
                                              {Path("3.mp3"), {{0.7 * end, end + 1.0}}, true}};
        ASSERT_TRUE(FinishMP3(source.c_str(), pieces));
        Floats played;
        for (const FinishPiece& piece : pieces) {
            const Floats samples = Decode(piece.path, true).samples;
            played.insert(played.end(), samples.begin(), samples.end());
        }
        EXPECT_LE(Difference(played, music.samples), kRounding);
    }
}

TEST_F(FinishedMP3s, AreExactBehindEveryJoin) {
    for (const std::string& clip : clips) {
        SCOPED_TRACE(clip);
        const std::string source = Source(clip);
        const Decoded whole = Decode(source, false);
        const long long frame = whole.rateHz >= 32000 ? 1152 : 576;
        const auto seconds = [&](long long frames) {
            return static_cast<double>(frames * frame) / whole.rateHz;
        };
        // Runs of 1 to 9 frames.
        std::vector<CutRange> removed;
        std::vector<std::pair<long long, long long>> kept;
        Random random(3);
        long long at = 8;
        long long begin = 0;
        while (at + 30 < whole.SampleFrames() / frame) {
            const long long next = at + 1 + random(12);
            removed.push_back({seconds(at), seconds(next)});
            kept.emplace_back(begin, at);
            begin = next;
            at = next + 1 + random(9);
        }
        kept.emplace_back(begin, whole.SampleFrames() / frame);
        const FinishPiece piece{Path("a.mp3"), removed, false};
        ASSERT_TRUE(FinishMP3(source.c_str(), {&piece, 1}));
        EXPECT_TRUE(FinishNotes().empty());
        ExpectTrueHeader(Read(piece.path));
        const Decoded result = Decode(piece.path, false);
        // A frame may have been put in front.
        long long position = 0;
        for (const auto& [first, end] : kept) {
            position += (end - first) * frame;
        }
        position = result.SampleFrames() - position;
        ASSERT_TRUE(position == 0 || position == frame);
        for (const auto& [first, end] : kept) {
            const long long overlap = first == 0 ? 0 : std::min(1152LL, (end - first) * frame);
            const long long size = (end - first) * frame;
            EXPECT_LE(Difference(result.Part(position + overlap, position + size),
                                 whole.Part(first * frame + overlap, end * frame)),
                      kRounding)
                << first;
            position += size;
        }
    }
}

TEST_F(FinishedMP3s, CorrectTheLengthInATagAndSayWhatTheyCannot) {
    const auto frame = [](const std::string& name, const std::string& data) {
        return name + std::string(3, '\0') + static_cast<char>(data.size()) + std::string(2, '\0') +
               data;
    };
    const std::string frames = frame("TIT2", std::string("\0x", 2)) +
                               frame("TLEN", std::string("\0", 1) + "123456") +
                               frame("CHAP", "anything");
    const std::string tag =
        std::string("ID3\3\0\0\0\0\0", 9) + static_cast<char>(frames.size()) + frames;
    const std::string audio = Read(std::string(KLIPRA_CLIPS) + "/joint-stereo-44100.mp3");
    const std::string source = folder.Write("source.mp3", tag + audio);
    const FinishPiece piece{Path("a.mp3"), {{0.25, 0.75}}, true};
    ASSERT_TRUE(FinishMP3(source.c_str(), {&piece, 1}));
    std::string expected = tag;
    expected.replace(expected.find("123456"), 6, "000500");
    EXPECT_EQ(Read(piece.path).substr(0, tag.size()), expected);
    ASSERT_EQ(FinishNotes().size(), 1U);
    EXPECT_EQ(DescribeNote(FinishNotes()[0]), "CHAP: describes the source");
}

TEST_F(FinishedMP3s, LeaveAFrameOfAnotherLayerAsItIs) {
    std::string bytes = Read(std::string(KLIPRA_CLIPS) + "/joint-stereo-44100.mp3");
    const std::size_t place = bytes.find(bytes.substr(0, 3), bytes.size() / 3);
    bytes[place + 1] = '\xFF'; // Layer I, whose frames are shorter at this bitrate
    const std::string foreign = bytes.substr(place, 172);
    const std::string source = folder.Write("source.mp3", bytes);
    const double seconds = static_cast<double>(place) / 8000.0; // 64 kbit/s
    const FinishPiece piece{Path("a.mp3"), {{seconds - 0.1, seconds + 0.5}}, true};
    ASSERT_TRUE(FinishMP3(source.c_str(), {&piece, 1}));
    EXPECT_NE(Read(piece.path).find(foreign), std::string::npos);
}

TEST_F(FinishedMP3s, AreWholeOrAbsentWhateverTheSource) {
    Random random(4);
    for (int round = 0; round < 150; ++round) {
        std::string bytes =
            Read(std::string(KLIPRA_CLIPS) + "/" + clips[static_cast<std::size_t>(random(5))]);
        const auto size = static_cast<int>(bytes.size());
        for (int i = random(60); i > 0; --i) {
            bytes[static_cast<std::size_t>(random(size))] = static_cast<char>(random(256));
        }
        bytes.resize(static_cast<std::size_t>(size - random(size / 2)));
        const std::string source = folder.Write("source.mp3", bytes);
        const double begin = 0.01 * random(100);
        const FinishPiece piece{
            Path("a.mp3"), {{begin, begin + 0.2}, {begin + 0.23, begin + 0.5}}, round % 2 == 0};
        std::filesystem::remove(piece.path);
        const bool isFinished = FinishMP3(source.c_str(), {&piece, 1});
        EXPECT_EQ(std::filesystem::exists(piece.path), isFinished);
        EXPECT_EQ(CutFailure().reason == CutReason::None, isFinished);
    }
}

} // namespace
