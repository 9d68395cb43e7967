#include "tests/audio/Samples.h"
#include "tests/support/Mp3Builder.h"
#include "tests/support/WavBuilder.h"

#include <mpg123.h>

#include <bit>
#include <cmath>
#include <filesystem>
#include <random>

namespace {

/// What libmpg123 makes of a whole MPEG file by itself, untrimmed.
Samples ReferenceDecode(const std::string& mp3) {
    mpg123_handle* handle = mpg123_new(nullptr, nullptr);
    mpg123_param(handle, MPG123_ADD_FLAGS, MPG123_QUIET, 0);
    mpg123_param(handle, MPG123_REMOVE_FLAGS, MPG123_GAPLESS, 0);
    mpg123_open_feed(handle);
    mpg123_feed(handle, reinterpret_cast<const unsigned char*>(mp3.data()), mp3.size());
    Samples all(mp3.size() * 50); // no clip has more samples a byte
    std::size_t bytes = 0;
    while (mpg123_read(handle, all.data(), all.size() * sizeof all[0], &bytes) ==
           MPG123_NEW_FORMAT) {
    }
    all.resize(bytes / sizeof all[0]);
    mpg123_delete(handle);
    return all;
}

/// Expects a file to decode to these samples with any number of threads, from any place on.
void ExpectDecodesTo(const Samples& whole, const std::string& path) {
    for (const unsigned threads : {1U, 2U, 5U}) {
        SCOPED_TRACE(threads);
        const auto decoder = OpenDecoder(path, threads);
        EXPECT_EQ(ReadOn(*decoder), whole);
        const std::int64_t channels = decoder->Format().channels;
        const std::int64_t length = decoder->Format().sampleFrames;
        ASSERT_EQ(length * channels, std::ssize(whole));
        std::mt19937 random(1);
        for (int i = 0; i < 25; ++i) {
            const std::int64_t position =
                i == 9 ? length : static_cast<std::int64_t>(random()) % length;
            SCOPED_TRACE(position);
            decoder->Seek(position);
            const auto from = whole.begin() + position * channels;
            const auto to = from + std::min<std::int64_t>(3000, length - position) * channels;
            EXPECT_EQ(ReadOn(*decoder, 3000), Samples(from, to));
        }
    }
}

class Decoding : public testing::Test {
protected:
    std::string Write(const std::string& bytes) const { return folder.Write("a", bytes); }
    Samples Decode(const std::string& bytes) const { return DecodeFile(Write(bytes)); }

    // Layer II: all of one size, and none depends on the bytes of another one.
    static constexpr std::size_t kFrameBytes = 288;
    const std::string frames = Clip("layer2-48000.mp3");
    TemporaryFolder folder;
};

TEST_F(Decoding, IsThatOfLibmpg123InOneGoFromAnyPlaceWithAnyNumberOfThreads) {
    // So many times that there are several blocks.
    for (const auto& [clip, times] :
         {std::pair("joint-stereo-44100.mp3", 14), std::pair("vbr-xing-48000.mp3", 14),
          std::pair("mono-8kbps-24000.mp3", 2), std::pair("abr-crc-22050.mp3", 14),
          std::pair("mono-8000.mp3", 30), std::pair("layer2-48000.mp3", 20)}) {
        SCOPED_TRACE(clip);
        std::string mp3 = Clip(clip, times);
        ExpectDecodesTo(ReferenceDecode(mp3), Write(mp3));
        // What is damaged sounds as it may, but always the same: in places, and all over.
        for (const std::size_t step : {50'021U, 97U}) {
            for (std::size_t at = 600; at < mp3.size(); at += step) {
                mp3[at] = static_cast<char>(at);
            }
            ExpectDecodesTo(Decode(mp3), Write(mp3));
        }
    }
}

TEST_F(Decoding, WhatIsNoFrameIsLeftOut) {
    const std::string fake = frames.substr(0, 4) + std::string(100, '\x2A'); // would swallow one
    const std::string joint = Clip("joint-stereo-44100.mp3");
    const Mp3Builder header = Mp3Builder().Format({.bitrateKbps = 64, .channelMode = 1});
    const std::string foreign = Mp3Builder().Frames(9).Bytes(); // of another stream
    std::string gaps;
    for (std::size_t at = 0; at < frames.size(); at += 2 * kFrameBytes) {
        gaps +=
            frames.substr(at, 2 * kFrameBytes) + std::string(at / kFrameBytes * 7 % 600, '\x2A');
    }
    std::string padded = frames; // by its header, not in fact
    padded[9 * kFrameBytes + 2] ^= 2;
    const std::pair<std::string, std::string> cases[] = {
        {std::string(32768, '\0') + frames, frames},
        {std::string(32769, '\0') + frames, ""},
        {fake + frames + std::string(50, '\x2A') + fake + frames, frames + frames},
        // What looks like a frame is one where another one follows, or the end.
        {frames + foreign + fake + foreign + frames, frames + frames},
        {frames + foreign + frames.substr(0, kFrameBytes), frames + frames.substr(0, kFrameBytes)},
        {frames + std::string(40'000, '\x2A') + frames, frames},
        {gaps, frames},
        {padded, frames},
        {frames + foreign + frames, frames + frames},
        {frames.substr(0, kFrameBytes + 1), frames.substr(0, kFrameBytes)},
        {frames.substr(0, 10 * kFrameBytes - 1), frames.substr(0, 9 * kFrameBytes)},
        {std::string(4'000'000, '\xFF'), ""},
        {frames.substr(0, kFrameBytes) + std::string(40'000, '\x2A'), ""},
        {WavBuilder{.rateHz = 2'000'000'000, .samples = "none"}.Bytes(), ""},
        {Mp3Builder(header).Vbri().Bytes() + joint, joint},
        {Mp3Builder(header).Xing(0).Bytes() + joint, joint},
        {Mp3Builder(header).Xing(0, 0, 0, 0, "Info").Bytes() + joint, joint},
    };
    for (const auto& [mp3, audio] : cases) {
        SCOPED_TRACE(mp3.size());
        EXPECT_EQ(Decode(mp3), Decode(audio));
    }
}

TEST_F(Decoding, OfLayer2WhoseJointStereoBeginsAboveItsBandsIsThatOfPlainStereoInSilence) {
    const Samples plain = Decode(frames); // has eight subbands
    for (const int bound : {8, 12, 16}) {
        std::string joint = frames;
        for (std::size_t at = 0; at < joint.size(); at += kFrameBytes) {
            char& mode = joint[at + 3];
            ASSERT_EQ(mode & 0xC0, 0);
            mode = static_cast<char>(mode | 0x40 | (bound / 4 - 1) << 4);
        }
        testing::internal::CaptureStderr();
        EXPECT_EQ(Decode(joint), plain);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    }
}

TEST_F(Decoding, TagsOfEveryKindAreNoAudio) {
    const auto size = static_cast<unsigned>(frames.size()); // what a tag holds is not heard
    const std::string ape = Mp3Builder().Ape(size).Patch(32, frames).Bytes();
    const std::string id3v2 = Mp3Builder().Id3v2(size, true).Patch(10, frames).Bytes();
    const std::string lyrics = Mp3Builder().Lyrics3v2(size).Patch(11, frames).Bytes();
    const std::string version3 = Mp3Builder().MusicMatch(size, 7868).Patch(0, frames).Bytes();
    const std::string musicMatch =
        Mp3Builder().MusicMatch(size, 8004, true).Patch(256, frames).Bytes();
    const std::string files[] = {
        frames + ape + Mp3Builder().Lyrics3v2(500).Id3v1().Bytes(),
        frames + musicMatch + Mp3Builder().Lyrics3v1(5000).Ape(9, false).Bytes(),
        frames + id3v2 + lyrics + version3 + Mp3Builder().Id3v1().Id3v1().Bytes(),
        ape + Mp3Builder().Id3v2(40'000).Bytes() + id3v2 + ape + frames,
        // A damaged tag ends the search, and nothing of the audio is lost for it.
        frames + "999999LYRICS200",
        frames + Mp3Builder().Ape(8, false).Patch(-20, std::string(4, '\xFF')).Bytes(),
        frames + Mp3Builder().MusicMatch(9).Patch(-56, std::string(4, '\0')).Bytes(),
    };
    for (const std::string& mp3 : files) {
        EXPECT_EQ(Decode(mp3), Decode(frames));
    }
}

TEST_F(Decoding, FileThatShrinksLaterIsSilentFromThere) {
    const std::string mp3 = Clip("joint-stereo-44100.mp3", 12);
    const std::string wav = WavBuilder{.samples = WavBuilder::Pattern(1'000'000)}.Bytes();
    for (const auto& [bytes, threads] :
         {std::pair(mp3, 1U), std::pair(mp3, 2U), std::pair(wav, 1U)}) {
        const Samples whole = Decode(bytes);
        const auto decoder = OpenDecoder(folder.Path("a"), threads);
        std::filesystem::resize_file(folder.Path("a"), bytes.size() / 2);
        const Samples samples = ReadOn(*decoder);
        ASSERT_EQ(samples.size(), whole.size());
        EXPECT_TRUE(std::equal(samples.begin(), samples.begin() + 100'000, whole.begin()));
        EXPECT_EQ(Samples(samples.end() - 100'000, samples.end()), Samples(100'000));
    }
}

TEST_F(Decoding, OfAWavWhoseSizesAreUnknownOrIn64BitsIsWhatIsThere) {
    const auto number = WavBuilder::Number;
    const std::string bytes = WavBuilder{.samples = WavBuilder::Pattern(4000)}.Bytes();
    const Samples samples = Decode(bytes);
    const std::string format = bytes.substr(12, 24);
    const std::string list = "LIST" + number(4, 4) + "INFO";
    constexpr std::uint32_t kUnknown = 0xFFFFFFFF;
    const auto file = [&](const std::string& form, std::uint32_t size, const std::string& sizes,
                          const std::string& behind) {
        const std::string ds64 =
            sizes.empty() ? "" : "ds64" + number(4, 28) + std::string(8, '\0') + sizes;
        return form + number(4, kUnknown) + "WAVE" + ds64 + "JUNK" + number(4, 3) + "abc" +
               std::string(1, '\0') + format + "data" + number(4, size) + bytes.substr(44) + behind;
    };
    const std::string zeros(20, '\0');
    const std::string true64 = number(4, 4000) + std::string(16, '\0');
    const std::string files[] = {
        file("RIFF", 0, "", "abc"),
        file("RIFF", kUnknown, "", "a"),
        file("RIFF", 4100, "", "ab"),
        file("RIFF", 4000, "", list),
        file("RF64", kUnknown, true64, list),
        file("BW64", kUnknown, true64, list),
        file("BW64", 4000, zeros, list),
        file("RF64", kUnknown, zeros, ""),
        file("RF64", kUnknown, std::string(20, '\xFF'), "abc"),
    };
    for (const std::string& wav : files) {
        EXPECT_EQ(Decode(wav), samples);
    }
    const std::string empty = WavBuilder{.samples = ""}.Bytes();
    EXPECT_EQ(Decode(empty + list), Samples());
    constexpr std::int64_t kBytes = 5'000'000'000; // of holes, which take no room
    std::filesystem::resize_file(Write(file("RIFF", 0, "", "")), kBytes);
    const auto decoder = OpenDecoder(folder.Path("a"), 1);
    EXPECT_EQ(decoder->Format().sampleFrames, (kBytes - 56) / 4);
    decoder->Seek(decoder->Format().sampleFrames - 1);
    EXPECT_EQ(ReadOn(*decoder), Samples(2));
    EXPECT_FALSE(decoder->Failure());
}

TEST_F(Decoding, OfEverySampleFormatOfAWav) {
    const auto decode = [this](std::uint16_t formatTag, int bytes, const std::string& samples) {
        const WavBuilder wav{.formatTag = formatTag,
                             .channels = 1,
                             .bytesPerSecond = 44100 * bytes,
                             .blockAlign = static_cast<std::int16_t>(bytes),
                             .samples = samples};
        constexpr std::size_t kBitsOffset = 34;
        return Decode(wav.Bytes().replace(kBitsOffset, 1, 1, static_cast<char>(bytes * 8)));
    };
    EXPECT_EQ(decode(1, 2, "\x34\x12\xFF\xFF"), (Samples{0x1234, -1}));
    EXPECT_EQ(decode(1, 3, std::string("\xFF\x34\x12\x00\x00\x80", 6)), (Samples{0x1234, -32768}));
    std::string floats; // scaled by full scale, not by the loudest sample
    for (const float value : {0.5F, -1.0F, 1.0F, -7.0F, 1.4F / 32768, 1.6F / 32768, NAN}) {
        floats += WavBuilder::Number(4, std::bit_cast<std::uint32_t>(value));
    }
    EXPECT_EQ(decode(3, 4, floats), (Samples{16384, -32768, 32767, -32768, 1, 2, 0}));
    std::string doubles; // the last one would be a half, and then 2, if it were rounded twice
    for (const double value : {0.5, 1.0, -7.0, 1.6 / 32768, double{NAN}, 1.4999999999 / 32768}) {
        const auto bits = std::bit_cast<std::uint64_t>(value);
        doubles += WavBuilder::Number(4, static_cast<std::uint32_t>(bits)) +
                   WavBuilder::Number(4, static_cast<std::uint32_t>(bits >> 32));
    }
    EXPECT_EQ(decode(3, 8, doubles), (Samples{16384, 32767, -32768, 2, 0, 1}));
    const WavBuilder wav{.channels = 3, .samples = WavBuilder::Pattern(6 * 20'000)};
    ExpectDecodesTo(Decode(wav.Bytes()), folder.Path("a"));
}

} // namespace
