#include "audio/DecodeAhead.h"
#include "audio/FrameIndexCache.h"
#include "audio/OpenDecoder.h"
#include "tests/audio/Samples.h"
#include "tests/support/Mp3Builder.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <random>
#include <thread>

namespace {

constexpr std::size_t kFrameBytes = 208; // of the joint stereo clip, without padding; 209 with it

/// Frames with random contents, most of which are damage; the bit reservoir is asked for at random.
std::string RandomFrames(const FrameFormat& format, int count, const std::string& contentBegin) {
    std::mt19937 random(7);
    std::string bytes;
    for (int i = 0; i < count; ++i) {
        std::string frame = format.Header() + contentBegin;
        while (frame.size() < format.SizeBytes()) {
            frame += static_cast<char>(random() % 255); // no 0xFF: no header inside
        }
        bytes += frame;
    }
    return bytes;
}

/// Splits MPEG frames end to end into the single ones.
std::vector<std::string> Split(const std::string& bytes) {
    std::vector<std::string> frames;
    for (std::size_t at = 0; at < bytes.size();) {
        const auto header =
            FrameHeader::Parse(reinterpret_cast<const std::uint8_t*>(bytes.data()) + at);
        if (!header) {
            ADD_FAILURE() << "no frame at " << at;
            break;
        }
        frames.push_back(bytes.substr(at, header->sizeBytes));
        at += header->sizeBytes;
    }
    return frames;
}

class Mp3Decoding : public testing::Test {
protected:
    Samples Decode(const std::string& mp3, unsigned threads = 1) {
        return DecodeFile(folder.Write("a.mp3", mp3), threads);
    }

    TemporaryFolder folder;
};

struct ClipCase {
    const char* name;
    int times; // that make several blocks of it

    friend std::ostream& operator<<(std::ostream& out, const ClipCase& clip) {
        return out << clip.name;
    }
};

class Mp3Clip : public Mp3Decoding, public testing::WithParamInterface<ClipCase> {};

INSTANTIATE_TEST_SUITE_P(
    Clips, Mp3Clip,
    testing::Values(ClipCase{"joint-stereo-44100.mp3", 14}, ClipCase{"vbr-xing-48000.mp3", 14},
                    ClipCase{"mono-8kbps-24000.mp3", 2}, ClipCase{"abr-crc-22050.mp3", 14},
                    ClipCase{"mono-8000.mp3", 30}, ClipCase{"layer2-48000.mp3", 20}));

TEST_P(Mp3Clip, DecodesToWhatLibmpg123DecodesInOneGo) {
    const std::string clip = Clip(GetParam().name);
    const Samples expected = ReferenceDecode(clip);
    ASSERT_FALSE(expected.empty());
    EXPECT_EQ(Decode(clip), expected);
}

TEST_P(Mp3Clip, ReadsTheSameFromAnyPlaceWithAnyNumberOfThreads) {
    const std::string path =
        folder.Write("long.mp3", RepeatedClip(GetParam().name, GetParam().times));
    const Samples whole = DecodeFile(path);
    for (const unsigned threads : {1U, 2U, 5U}) {
        SCOPED_TRACE(threads);
        EXPECT_EQ(DecodeFile(path, threads), whole);
        ExpectSeeksAgree(*OpenDecoder(path.c_str(), threads), whole);
    }
}

TEST_F(Mp3Decoding, BlocksContinueEachOtherAsIfDecodedInOneGo) {
    const std::string mp3 = RepeatedClip("joint-stereo-44100.mp3", 12); // four blocks
    EXPECT_EQ(Decode(mp3), ReferenceDecode(mp3));
    const std::string deep = RepeatedClip("mono-8kbps-24000.mp3", 2);
    EXPECT_EQ(Decode(deep), ReferenceDecode(deep));
}

TEST_F(Mp3Decoding, DamagedFramesAreTheSameFromAnyPlace) {
    const FrameFormat layer1{.layer = 1, .bitrateKbps = 384};
    const FrameFormat layer3{.bitrateKbps = 64, .channelMode = 1, .modeExtension = 3};
    const FrameFormat lsf{
        .version = 2, .bitrateKbps = 8, .rateHz = 24000, .channelMode = 0, .isProtected = true};
    for (const std::string& mp3 : {RandomFrames(layer1, 1500, std::string(32, '\x44')),
                                   RandomFrames(layer3, 1500, ""), RandomFrames(lsf, 1500, "")}) {
        const std::string path = folder.Write("damaged.mp3", mp3);
        const auto decoder = OpenDecoder(path.c_str(), 3);
        ASSERT_NE(decoder, nullptr);
        const Samples whole = DecodeFile(path);
        EXPECT_EQ(ReadAll(*decoder), whole);
        ExpectSeeksAgree(*decoder, whole);
        std::filesystem::remove(path);
    }
}

TEST_F(Mp3Decoding, WhatIsNoFrameIsLeftOut) {
    const std::string frames = Clip("joint-stereo-44100.mp3");
    const Samples expected = Decode(frames);
    const Mp3Builder tags = Mp3Builder().Id3v2(3000).Id3v2(10, true);
    const Mp3Builder end = Mp3Builder().Ape(500).Id3v1();

    EXPECT_EQ(Decode(tags.Bytes() + frames + end.Bytes()), expected);
    EXPECT_EQ(Decode(std::string(32768, '\0') + frames), expected);
    EXPECT_EQ(Decode(std::string(32769, '\0') + frames), Samples());

    std::string gaps;
    for (const std::string& frame : Split(frames)) {
        gaps += frame;
        gaps.append(gaps.size() % 600, '\x2A');
    }
    EXPECT_EQ(Decode(gaps), expected);
    EXPECT_EQ(
        Decode(frames.substr(0, 20 * kFrameBytes) + std::string(40000, '\x2A') + frames).size(),
        20 * 1152 * 2)
        << "a gap that the cutters do not cross";
}

TEST_F(Mp3Decoding, TagsOfEveryKindAreNoAudio) {
    const std::string frames = Clip("joint-stereo-44100.mp3");
    const Samples expected = Decode(frames);
    std::mt19937 random(5);
    std::string picture(60'000, '\0');
    std::generate(picture.begin(), picture.end(), [&] { return static_cast<char>(random()); });
    picture.replace(20'000, frames.size() / 2, frames, 0, frames.size() / 2);
    const auto withPicture = [&](Mp3Builder builder, long long contentOffset) {
        return builder.Patch(contentOffset, picture).Bytes();
    };
    const std::string ape = withPicture(Mp3Builder().Ape(60'000), 32);
    const std::string footerTag = withPicture(Mp3Builder().Id3v2(60'000, true), 10);
    const std::string musicMatch = withPicture(Mp3Builder().MusicMatch(60'000, 8004, true), 256);
    const std::string version3 = withPicture(Mp3Builder().MusicMatch(60'000, 7868), 0);
    const std::string lyrics = withPicture(Mp3Builder().Lyrics3v2(60'000), 11);
    const std::string id3v1 = Mp3Builder().Id3v1().Bytes();

    EXPECT_EQ(Decode(frames + ape + Mp3Builder().Lyrics3v2(500).Id3v1().Bytes()), expected);
    EXPECT_EQ(Decode(frames + musicMatch + Mp3Builder().Lyrics3v1(5000).Ape(9, false).Bytes()),
              expected);
    EXPECT_EQ(Decode(frames + id3v1 + lyrics + footerTag + version3 + id3v1), expected);
    EXPECT_EQ(Decode(ape + Mp3Builder().Id3v2(40'000).Bytes() + ape + frames), expected);

    // A damaged tag ends the search, and nothing of the audio is lost for it.
    for (const Mp3Builder& damaged :
         {Mp3Builder().Raw("LYRICSEND"), Mp3Builder().Raw("999999LYRICS200"),
          Mp3Builder().Ape(8, false).Patch(8 + 12, std::string(4, '\xFF')),
          Mp3Builder().Ape(8, false).Patch(8 + 12, std::string(4, '\0')),
          Mp3Builder().MusicMatch(9).Patch(9 + 256 + 7936 + 12, std::string(4, '\0')),
          Mp3Builder().MusicMatch(9).Patch(9, "no section")}) {
        EXPECT_EQ(Decode(frames + damaged.Bytes()), expected);
    }
}

TEST_F(Mp3Decoding, VbrHeaderFrameIsNotDecoded) {
    const std::string frames = Clip("joint-stereo-44100.mp3");
    const Samples expected = Decode(frames);
    const FrameFormat format{.bitrateKbps = 64, .channelMode = 1};
    const Mp3Builder vbri = Mp3Builder().Format(format).Vbri({});
    const Mp3Builder xing = Mp3Builder().Format(format).Xing(0);
    const Mp3Builder info = Mp3Builder().Format(format).Xing(0, 0, 0, 0, "Info");
    for (const Mp3Builder& header : {vbri, xing, info}) {
        std::string mp3 = header.Bytes();
        mp3 += frames;
        EXPECT_EQ(Decode(mp3), expected);
        mp3.insert(0, frames);
        EXPECT_EQ(Decode(mp3).size(), 2 * expected.size() + 1152 * 2) << "only as the first frame";
    }
}

TEST_F(Mp3Decoding, FileCutShortEndsWithItsLastWholeFrame) {
    const std::string frames = Clip("joint-stereo-44100.mp3");
    const Samples expected = Decode(frames);
    for (const std::size_t bytes :
         {kFrameBytes + 1, 10 * kFrameBytes - 1, 10 * kFrameBytes + 200}) {
        const Samples cut = Decode(frames.substr(0, bytes));
        ASSERT_EQ(cut.size(), bytes / (kFrameBytes + 1) * 1152 * 2);
        EXPECT_TRUE(std::equal(cut.begin(), cut.end(), expected.begin()));
    }
}

TEST_F(Mp3Decoding, OtherKindsOfFramesOnTheWay) {
    const std::string stereo = Clip("joint-stereo-44100.mp3");
    const std::size_t stereoSize = Decode(stereo).size();
    EXPECT_EQ(Decode(stereo + Clip("vbr-xing-48000.mp3") + stereo).size(), 2 * stereoSize)
        << "another sampling rate is left out";

    const FrameFormat mono{.channelMode = 3};
    const std::string converted = stereo + RandomFrames(mono, 20, std::string(21, '\0')) + stereo;
    EXPECT_EQ(Decode(converted).size(), 2 * stereoSize + std::size_t{20 * 1152 * 2})
        << "another channel count is converted";
}

TEST_F(Mp3Decoding, FrameMayStandAFewBytesOff) {
    std::vector<std::string> frames = Split(Clip("joint-stereo-44100.mp3"));
    frames[5] += "\x2A\x2A\x2A"; // as if padded
    frames[9].pop_back();        // as if not padded
    std::string mp3;
    for (const std::string& frame : frames) {
        mp3 += frame;
    }
    EXPECT_EQ(Decode(mp3).size(), frames.size() * 1152 * 2);
}

TEST_F(Mp3Decoding, TakesTheFrameThatIsFollowedByAnotherOne) {
    // A header in garbage, 100 bytes before the next frame: it would swallow that.
    const std::string frames = Clip("joint-stereo-44100.mp3");
    const std::string fake = frames.substr(0, 4) + std::string(100, '\x2A');
    EXPECT_EQ(Decode(frames + std::string(50, '\x2A') + fake + frames).size(),
              2 * Decode(frames).size());
}

TEST_F(Mp3Decoding, RefusesWhatIsNoAudio) {
    std::mt19937 random(3);
    std::string noise(4'000'000, '\0');
    std::generate(noise.begin(), noise.end(), [&] { return static_cast<char>(random()); });
    const std::string text("\xFF\xFEh\0e\0l\0l\0o\0", 12);
    for (const std::string& bytes :
         {std::string(), std::string("\xFF"), text, noise, std::string(4'000'000, '\xFF'),
          std::string("RIFF\x24\0\0\0WAVE", 12), "RIFF" + noise,
          Mp3Builder().Id3v2(9000).Truncate(8000).Frames(3).Bytes()}) {
        EXPECT_EQ(OpenDecoder(folder.Write("a.mp3", bytes).c_str(), 1), nullptr);
    }
    EXPECT_EQ(OpenDecoder(folder.Path("").c_str(), 1), nullptr);
    EXPECT_EQ(OpenDecoder(folder.Path("missing").c_str(), 1), nullptr);
}

TEST_F(Mp3Decoding, FileThatShrinksLaterIsSilentFromThere) {
    const std::string mp3 = RepeatedClip("joint-stereo-44100.mp3", 12);
    const std::string path = folder.Write("shrinks.mp3", mp3);
    const Samples whole = DecodeFile(path);
    for (const unsigned threads : {1U, 2U}) {
        folder.Write("shrinks.mp3", mp3);
        const auto decoder = OpenDecoder(path.c_str(), threads);
        std::filesystem::resize_file(path, mp3.size() / 2);
        const Samples samples = ReadAll(*decoder);
        ASSERT_EQ(samples.size(), whole.size());
        EXPECT_TRUE(std::equal(samples.begin(), samples.begin() + 100'000, whole.begin()));
        EXPECT_TRUE(std::all_of(samples.end() - 100'000, samples.end(),
                                [](std::int16_t sample) { return sample == 0; }));
    }
}

TEST_F(Mp3Decoding, IndexIsKeptUntilTheFileChanges) {
    const std::string path = folder.Write("a.mp3", Clip("joint-stereo-44100.mp3"));
    FrameIndexCache cache;
    const auto first = cache.IndexOf(File::Open(path.c_str()));
    EXPECT_EQ(cache.IndexOf(File::Open(path.c_str())), first);
    folder.Write("a.mp3", RepeatedClip("joint-stereo-44100.mp3", 2));
    EXPECT_EQ(cache.IndexOf(File::Open(path.c_str()))->FrameCount(), 2 * first->FrameCount());
}

std::size_t ThreadCount() {
    using Iterator = std::filesystem::directory_iterator;
    return static_cast<std::size_t>(std::distance(Iterator("/proc/self/task"), Iterator()));
}

TEST_F(Mp3Decoding, FreedHalfWayLeavesNoThread) {
    const std::string path = folder.Write("a.mp3", RepeatedClip("joint-stereo-44100.mp3", 40));
    std::thread([] {}).join(); // with the first one a sanitizer starts one of its own
    const std::size_t before = ThreadCount();
    for (const int reads : {0, 1, 1000}) {
        const auto decoder = OpenDecoder(path.c_str(), 3);
        for (int i = 0; i < reads; ++i) {
            ASSERT_EQ(decoder->Read(882).empty(), false);
        }
        EXPECT_EQ(ThreadCount(), before + (reads > 0 ? 3 : 0));
    }
    EXPECT_EQ(ThreadCount(), before);
}

} // namespace
