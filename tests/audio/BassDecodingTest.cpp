#include "audio/bass.h"
#include "tests/audio/Samples.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <sys/stat.h>
#include <thread>

namespace {

constexpr QWORD kNone = ~QWORD{0};
constexpr DWORD kDecode = BASS_STREAM_DECODE;

HSTREAM Open(const std::string& path, DWORD flags) {
    return BASS_StreamCreateFile(FALSE, path.c_str(), 0, 0, flags);
}

/// A stereo WAV whose n-th sample frame has n on the left and -n on the right.
std::string CountingWav(int sampleFrames, std::uint32_t rateHz = 44100) {
    WavBuilder wav{.rateHz = rateHz};
    for (int i = 0; i < sampleFrames; ++i) {
        wav.samples += WavBuilder::Number(2, static_cast<std::uint32_t>(i)) +
                       WavBuilder::Number(2, static_cast<std::uint32_t>(-i));
    }
    return wav.Bytes();
}

/// The same failures for a handle that never was and one that was freed.
void ExpectAllFail(DWORD handle) {
    float levels[2] = {-1, -1};
    char block[8];
    EXPECT_EQ(BASS_StreamFree(handle), FALSE);
    EXPECT_EQ(BASS_ChannelPlay(handle, FALSE), FALSE);
    EXPECT_EQ(BASS_ChannelStop(handle), FALSE);
    EXPECT_EQ(BASS_ChannelIsActive(handle), BASS_ACTIVE_STOPPED);
    EXPECT_EQ(BASS_ChannelSetSync(
                  handle, BASS_SYNC_END, 0, [](HSYNC, DWORD, DWORD, void*) {}, nullptr),
              0U);
    EXPECT_EQ(BASS_ChannelGetLength(handle, BASS_POS_BYTE), kNone);
    EXPECT_EQ(BASS_ChannelGetPosition(handle, BASS_POS_BYTE), kNone);
    EXPECT_EQ(BASS_ChannelSetPosition(handle, 0, BASS_POS_BYTE), FALSE);
    EXPECT_EQ(BASS_ChannelSetPosition(handle, kNone, BASS_POS_SCAN), FALSE);
    EXPECT_LT(BASS_ChannelBytes2Seconds(handle, 0), 0);
    EXPECT_EQ(BASS_ChannelSeconds2Bytes(handle, 0), kNone);
    EXPECT_EQ(BASS_ChannelGetLevelEx(handle, levels, 0.02F, BASS_LEVEL_STEREO), FALSE);
    EXPECT_EQ(levels[0], -1);
    EXPECT_EQ(BASS_ChannelGetAttributeEx(handle, BASS_ATTRIB_SCANINFO, nullptr, 0), 0U);
    EXPECT_EQ(BASS_ChannelSetAttributeEx(handle, BASS_ATTRIB_SCANINFO, block, 8), FALSE);
}

TEST(BassCalls, FailOnUnknownHandlesAndRefusedFiles) {
    const TemporaryFolder folder;
    ExpectAllFail(0);
    const HSTREAM stream = Open(folder.Write("a.wav", CountingWav(10)), kDecode);
    ASSERT_NE(stream, 0U);
    EXPECT_EQ(BASS_StreamFree(stream), TRUE);
    ExpectAllFail(stream);

    ASSERT_EQ(mkfifo(folder.Path("fifo").c_str(), 0600), 0);
    for (const char* name : {"missing", "fifo", "", "/dev/zero"}) {
        EXPECT_EQ(Open(name[0] == '/' ? name : folder.Path(name), 0), 0U) << name;
    }
    EXPECT_EQ(BASS_MusicLoad(FALSE, folder.Path("a.wav").c_str(), 0, 0, BASS_MUSIC_PRESCAN, 1), 0U);
    EXPECT_EQ(BASS_GetVersion() >> 16, 0x0204U);
}

TEST(BassCalls, PositionsAndSeconds) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a.wav", CountingWav(1000));
    for (const DWORD flags : {0U, kDecode}) {
        const HSTREAM stream = Open(path, flags);
        EXPECT_EQ(BASS_ChannelGetLength(stream, BASS_POS_BYTE), 4000U);
        EXPECT_EQ(BASS_ChannelSetPosition(stream, 4000, BASS_POS_BYTE), TRUE);
        EXPECT_EQ(BASS_ChannelSetPosition(stream, 403, BASS_POS_BYTE), TRUE);
        EXPECT_EQ(BASS_ChannelSetPosition(stream, 4001, BASS_POS_BYTE), FALSE);
        EXPECT_EQ(BASS_ChannelSetPosition(stream, kNone, BASS_POS_BYTE), FALSE);
        EXPECT_EQ(BASS_ChannelSetPosition(stream, kNone, BASS_POS_SCAN), TRUE);
        EXPECT_EQ(BASS_ChannelGetPosition(stream, BASS_POS_BYTE), 400U);

        EXPECT_EQ(BASS_ChannelSeconds2Bytes(stream, 0.001), 44U * 4);
        EXPECT_EQ(BASS_ChannelBytes2Seconds(stream, 44100 * 4 + 2), 1 + 0.5 / 44100);
        for (QWORD bytes = 0; bytes < 400'000'000; bytes = bytes * 5 / 4 + 4 - bytes * 5 / 4 % 4) {
            const double seconds = BASS_ChannelBytes2Seconds(stream, bytes);
            EXPECT_EQ(BASS_ChannelSeconds2Bytes(stream, seconds), bytes);
        }
        for (const double seconds : {-0.001, 1e300, double{INFINITY}, double{NAN}}) {
            EXPECT_EQ(BASS_ChannelSeconds2Bytes(stream, seconds), kNone);
        }
        BASS_StreamFree(stream);
    }
}

TEST(BassLevels, StretchesAreRoundedWithoutAddingUp) {
    const TemporaryFolder folder;
    const HSTREAM stream = Open(folder.Write("a.wav", CountingWav(30'000)), kDecode);
    float levels[2];
    // The last sample frame of a stretch is its loudest.
    for (int block = 1; block <= 30; ++block) {
        ASSERT_EQ(BASS_ChannelGetLevelEx(stream, levels, 0.02F, BASS_LEVEL_STEREO), TRUE);
        EXPECT_EQ(levels[0] * 32768, 882.0F * static_cast<float>(block) - 1);
        EXPECT_EQ(levels[1], levels[0]);
        EXPECT_EQ(BASS_ChannelGetPosition(stream, BASS_POS_BYTE), 882U * 4 * block);
    }
    // A third of a sample frame at a time, from a place of its own.
    BASS_ChannelSetPosition(stream, 400, BASS_POS_BYTE);
    for (int step = 1; step <= 300; ++step) {
        const auto length = static_cast<float>(1.0 / 3 / 44100);
        EXPECT_EQ(BASS_ChannelGetLevelEx(stream, levels, length, BASS_LEVEL_STEREO), TRUE);
        EXPECT_EQ(BASS_ChannelGetPosition(stream, BASS_POS_BYTE), 4U * (100 + (step + 1) / 3));
    }
    for (const float length : {0.0F, -1.0F, 1.001F, NAN}) {
        EXPECT_EQ(BASS_ChannelGetLevelEx(stream, levels, length, BASS_LEVEL_STEREO), FALSE);
    }
    EXPECT_EQ(BASS_ChannelGetLevelEx(stream, levels, 0.02F, 0), FALSE);
    BASS_StreamFree(stream);
}

TEST(BassLevels, StreamEndsWithAStretchCutShort) {
    const TemporaryFolder folder;
    float levels[2];
    for (const int tail : {0, 1}) {
        const std::string name = std::to_string(tail) + ".wav";
        const HSTREAM stream = Open(folder.Write(name, CountingWav(2 * 882 + tail)), kDecode);
        for (const int stretch : {1, 2}) {
            EXPECT_EQ(BASS_ChannelGetLevelEx(stream, levels, 0.02F, BASS_LEVEL_STEREO), TRUE);
            EXPECT_NE(BASS_ChannelIsActive(stream), BASS_ACTIVE_STOPPED) << stretch;
        }
        EXPECT_EQ(BASS_ChannelGetLevelEx(stream, levels, 0.02F, BASS_LEVEL_STEREO), tail);
        EXPECT_EQ(levels[0] * 32768, static_cast<float>(2 * 882 + tail - 1));
        EXPECT_EQ(BASS_ChannelIsActive(stream), BASS_ACTIVE_STOPPED);
        EXPECT_EQ(BASS_ChannelGetLevelEx(stream, levels, 0.02F, BASS_LEVEL_STEREO), FALSE);
        BASS_ChannelSetPosition(stream, 0, BASS_POS_BYTE);
        EXPECT_NE(BASS_ChannelIsActive(stream), BASS_ACTIVE_STOPPED);
        EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), FALSE);
        BASS_StreamFree(stream);
    }
}

TEST(BassAttributes, SeekInfoFitsOnlyItsOwnFile) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a.mp3", RepeatedClip("joint-stereo-44100.mp3", 4));
    const std::string other = folder.Write("b.mp3", RepeatedClip("joint-stereo-44100.mp3", 4));
    const HSTREAM scan = Open(path, kDecode);
    const HSTREAM play = Open(path, 0);
    const HSTREAM elsewhere = Open(other, 0);
    const DWORD size = BASS_ChannelGetAttributeEx(scan, BASS_ATTRIB_SCANINFO, nullptr, 0);
    ASSERT_GT(size, 0U);
    std::string info(size, '\0');
    EXPECT_EQ(BASS_ChannelGetAttributeEx(scan, BASS_ATTRIB_SCANINFO, info.data(), size - 1), 0U);
    EXPECT_EQ(BASS_ChannelGetAttributeEx(scan, BASS_ATTRIB_SCANINFO, info.data(), size), size);
    EXPECT_EQ(BASS_ChannelSetAttributeEx(play, BASS_ATTRIB_SCANINFO, info.data(), size), TRUE);
    EXPECT_EQ(BASS_ChannelSetAttributeEx(elsewhere, BASS_ATTRIB_SCANINFO, info.data(), size),
              FALSE);
    EXPECT_EQ(BASS_ChannelSetAttributeEx(play, BASS_ATTRIB_SCANINFO, info.data(), size - 8), FALSE);
    const HSTREAM wav = Open(folder.Write("a.wav", CountingWav(10)), kDecode);
    EXPECT_EQ(BASS_ChannelGetAttributeEx(wav, BASS_ATTRIB_SCANINFO, nullptr, 0), 0U);
    for (const HSTREAM stream : {scan, play, elsewhere, wav}) {
        BASS_StreamFree(stream);
    }
}

TEST(BassCalls, FromManyThreadsAtOnce) {
    const TemporaryFolder folder;
    const std::string path = folder.Write("a.mp3", RepeatedClip("joint-stereo-44100.mp3", 10));
    const HSTREAM shared = Open(path, kDecode);
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] {
            float levels[2];
            for (QWORD step = 0; step < 20; ++step) {
                BASS_ChannelGetLevelEx(shared, levels, 0.5F, BASS_LEVEL_STEREO);
                BASS_ChannelSetPosition(shared, step * 100'000, BASS_POS_BYTE);
                const HSTREAM own = Open(path, i % 2 == 0 ? kDecode : 0);
                EXPECT_NE(own, 0U);
                BASS_ChannelGetLevelEx(own, levels, 0.02F, BASS_LEVEL_STEREO);
                EXPECT_EQ(BASS_StreamFree(own), TRUE);
                if (i == 0 && step == 15) {
                    EXPECT_EQ(BASS_StreamFree(shared), TRUE);
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace
