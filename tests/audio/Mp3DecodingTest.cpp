#include "audio/FrameHeader.h"
#include "audio/FrameIndexCache.h"
#include "audio/OpenDecoder.h"
#include "tests/audio/Samples.h"
#include "tests/support/Mp3Builder.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
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

/// Random bytes, which hold anything that could be taken for a header.
std::string Noise(std::size_t size) {
    std::mt19937 random(3);
    std::string noise(size, '\0');
    std::generate(noise.begin(), noise.end(), [&] { return static_cast<char>(random()); });
    return noise;
}

class Mp3Decoding : public testing::Test {
protected:
    Samples Decode(const std::string& mp3, unsigned threads = 1) {
        return DecodeFile(folder.Write("a.mp3", mp3), threads);
    }

    const std::string frames = Clip("joint-stereo-44100.mp3");
    TemporaryFolder folder;
};

/// A clip, and how many times it has to be repeated to make several blocks.
class Mp3Clip : public Mp3Decoding,
                public testing::WithParamInterface<std::pair<std::string, int>> {};

INSTANTIATE_TEST_SUITE_P(
    Clips, Mp3Clip,
    testing::Values(std::pair("joint-stereo-44100.mp3", 14), std::pair("vbr-xing-48000.mp3", 14),
                    std::pair("mono-8kbps-24000.mp3", 2), std::pair("abr-crc-22050.mp3", 14),
                    std::pair("mono-8000.mp3", 30), std::pair("layer2-48000.mp3", 20)));

TEST_P(Mp3Clip, DecodesToWhatLibmpg123DecodesInOneGoFromAnyPlaceWithAnyNumberOfThreads) {
    const auto& [clip, times] = GetParam();
    const std::string mp3 = Clip(clip, times);
    const std::string path = folder.Write("long.mp3", mp3);
    const Samples whole = ReferenceDecode(mp3);
    for (const unsigned threads : {1U, 2U, 5U}) {
        SCOPED_TRACE(threads);
        EXPECT_EQ(DecodeFile(path, threads), whole);
        ExpectSeeksAgree(*OpenDecoder(path.c_str(), threads), whole);
    }
}

TEST_F(Mp3Decoding, DamagedFramesAreTheSameFromAnyPlace) {
    const FrameFormat layer1{.layer = 1, .bitrateKbps = 384};
    const FrameFormat layer3{.bitrateKbps = 64, .channelMode = 1, .modeExtension = 3};
    const FrameFormat lsf{
        .version = 2, .bitrateKbps = 8, .rateHz = 24000, .channelMode = 0, .isProtected = true};
    for (const std::string& mp3 : {RandomFrames(layer1, 1500, std::string(32, '\x44')),
                                   RandomFrames(layer3, 1500, ""), RandomFrames(lsf, 1500, "")}) {
        const Samples whole = Decode(mp3);
        const auto decoder = OpenDecoder(folder.Path("a.mp3").c_str(), 3);
        EXPECT_EQ(ReadAll(*decoder), whole);
        ExpectSeeksAgree(*decoder, whole);
    }
}

TEST_F(Mp3Decoding, WhatIsNoFrameIsLeftOut) {
    const Samples expected = Decode(frames);
    const FrameFormat format{.bitrateKbps = 64, .channelMode = 1};
    std::string gaps;
    for (std::size_t at = 0, size = 0; at < frames.size(); at += size) {
        const auto* header = reinterpret_cast<const std::uint8_t*>(frames.data() + at);
        size = FrameHeader::Parse(header).value().sizeBytes;
        gaps += frames.substr(at, size) + std::string((at + size) % 600, '\x2A');
    }
    for (const std::string& mp3 :
         {Mp3Builder().Id3v2(3000).Id3v2(10, true).Bytes() + frames + Mp3Builder().Id3v1().Bytes(),
          std::string(32768, '\0') + frames, gaps,
          Mp3Builder().Format(format).Vbri().Bytes() + frames,
          Mp3Builder().Format(format).Xing(0).Bytes() + frames,
          Mp3Builder().Format(format).Xing(0, 0, 0, 0, "Info").Bytes() + frames}) {
        EXPECT_EQ(Decode(mp3), expected);
    }
    EXPECT_EQ(Decode(std::string(32769, '\0') + frames), Samples());
}

TEST_F(Mp3Decoding, FramesThatAreNoneOrElsewhere) {
    const std::size_t count = Decode(frames).size() / (1152 * 2);
    const std::string fake = frames.substr(0, 4) + std::string(100, '\x2A'); // would swallow one
    const FrameFormat format{.bitrateKbps = 64, .channelMode = 1};
    const FrameFormat mono{.channelMode = 3};
    std::string displaced = frames;
    displaced.insert(frames.find(frames.substr(0, 2), 6 * kFrameBytes), "\x2A\x2A\x2A");
    displaced.erase(displaced.find(frames.substr(0, 2), 12 * kFrameBytes) - 1, 1);
    const std::pair<std::string, std::size_t> cases[] = {
        {frames.substr(0, 20 * kFrameBytes) + std::string(40000, '\x2A') + frames, 20},
        {frames + std::string(50, '\x2A') + fake + frames, 2 * count},
        {frames + Clip("vbr-xing-48000.mp3") + frames, 2 * count}, // another rate is left out
        {frames + RandomFrames(mono, 20, std::string(21, '\0')) + frames, 2 * count + 20},
        {frames + Mp3Builder().Format(format).Xing(0).Bytes() + frames, 2 * count + 1},
        {displaced, count}, // a few bytes off, as if padded and as if not
        {frames.substr(0, kFrameBytes + 1), 1},
        {frames.substr(0, 10 * kFrameBytes - 1), 9},
        {frames.substr(0, 10 * kFrameBytes + 200), 10},
    };
    for (const auto& [mp3, expected] : cases) {
        EXPECT_EQ(Decode(mp3).size(), expected * 1152 * 2);
    }
}

TEST_F(Mp3Decoding, TagsOfEveryKindAreNoAudio) {
    const Samples expected = Decode(frames);
    const std::string picture = Noise(20'000) + frames.substr(0, frames.size() / 2) + Noise(20'000);
    const auto size = static_cast<unsigned>(picture.size());
    const auto withPicture = [&](Mp3Builder builder, long long contentOffset) {
        return builder.Patch(contentOffset, picture).Bytes();
    };
    const std::string ape = withPicture(Mp3Builder().Ape(size), 32);
    const std::string footerTag = withPicture(Mp3Builder().Id3v2(size, true), 10);
    const std::string musicMatch = withPicture(Mp3Builder().MusicMatch(size, 8004, true), 256);
    const std::string version3 = withPicture(Mp3Builder().MusicMatch(size, 7868), 0);
    const std::string lyrics = withPicture(Mp3Builder().Lyrics3v2(size), 11);
    const std::string id3v1 = Mp3Builder().Id3v1().Bytes();
    std::vector<std::string> files = {frames + ape + Mp3Builder().Lyrics3v2(500).Id3v1().Bytes(),
                                      frames + musicMatch +
                                          Mp3Builder().Lyrics3v1(5000).Ape(9, false).Bytes(),
                                      frames + id3v1 + lyrics + footerTag + version3 + id3v1,
                                      ape + Mp3Builder().Id3v2(40'000).Bytes() + ape + frames};
    // A damaged tag ends the search, and nothing of the audio is lost for it.
    for (const Mp3Builder& damaged :
         {Mp3Builder().Raw("LYRICSEND"), Mp3Builder().Raw("999999LYRICS200"),
          Mp3Builder().Ape(8, false).Patch(8 + 12, std::string(4, '\xFF')),
          Mp3Builder().Ape(8, false).Patch(8 + 12, std::string(4, '\0')),
          Mp3Builder().MusicMatch(9).Patch(9 + 256 + 7936 + 12, std::string(4, '\0')),
          Mp3Builder().MusicMatch(9).Patch(9, "no section")}) {
        files.push_back(frames + damaged.Bytes());
    }
    for (const std::string& mp3 : files) {
        EXPECT_EQ(Decode(mp3), expected);
    }
}

TEST_F(Mp3Decoding, RefusesWhatIsNoAudio) {
    const std::string noise = Noise(4'000'000);
    for (const std::string& bytes :
         {std::string(), std::string("\xFF"), noise, std::string(4'000'000, '\xFF'),
          std::string("RIFF\x24\0\0\0WAVE", 12), "RIFF" + noise,
          Mp3Builder().Id3v2(9000).Truncate(8000).Frames(3).Bytes()}) {
        EXPECT_EQ(OpenDecoder(folder.Write("a.mp3", bytes).c_str(), 1), nullptr);
    }
}

TEST_F(Mp3Decoding, FileThatShrinksLaterIsSilentFromThere) {
    const std::string mp3 = Clip("joint-stereo-44100.mp3", 12);
    const Samples whole = Decode(mp3);
    for (const unsigned threads : {1U, 2U}) {
        const std::string path = folder.Write("a.mp3", mp3);
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
    const std::string path = folder.Write("a.mp3", frames);
    FrameIndexCache cache;
    const auto first = cache.IndexOf(File::Open(path.c_str()));
    EXPECT_EQ(cache.IndexOf(File::Open(path.c_str())), first);
    folder.Write("a.mp3", frames + frames);
    EXPECT_EQ(cache.IndexOf(File::Open(path.c_str()))->FrameCount(), 2 * first->FrameCount());
}

TEST_F(Mp3Decoding, FreedHalfWayLeavesNoThread) {
    using Threads = std::filesystem::directory_iterator;
    const auto count = [] { return std::distance(Threads("/proc/self/task"), Threads()); };
    const std::string path = folder.Write("a.mp3", Clip("joint-stereo-44100.mp3", 40));
    std::thread([] {}).join(); // with the first one a sanitizer starts one of its own
    const auto before = count();
    for (const int reads : {0, 1, 1000}) {
        const auto decoder = OpenDecoder(path.c_str(), 3);
        for (int i = 0; i < reads; ++i) {
            ASSERT_FALSE(decoder->Read(882).empty());
        }
        EXPECT_EQ(count(), before + (reads > 0 ? 3 : 0));
    }
    EXPECT_EQ(count(), before);
}

} // namespace
