#include "audio/bass.h"

#include "tests/audio/Samples.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <functional>
#include <future>
#include <sys/stat.h>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPatience = std::chrono::seconds(30);
constexpr QWORD kNone = ~QWORD{0};
constexpr DWORD kDecode = BASS_STREAM_DECODE;

/// Counts the calls of an end sync, and does what a test wants done there.
class EndCounter {
public:
    explicit EndCounter(HSTREAM stream)
        : m_stream(stream),
          m_sync(BASS_ChannelSetSync(stream, BASS_SYNC_END, 0, &EndCounter::Callback, this)) {}

    /// @return false when there were not so many calls in time
    bool Await(int calls) {
        std::unique_lock lock(m_mutex);
        return m_called.wait_for(lock, kPatience, [&] { return m_calls >= calls; });
    }

    int Calls() const { return m_calls; }
    bool IsRegistered() const { return m_sync != 0; }

    std::function<void()> action = [] {};

private:
    static void Callback(HSYNC sync, DWORD stream, DWORD data, void* user) {
        auto* self = static_cast<EndCounter*>(user);
        EXPECT_TRUE(sync == self->m_sync && stream == self->m_stream && data == 0);
        self->action();
        const std::lock_guard lock(self->m_mutex);
        ++self->m_calls;
        self->m_called.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable m_called;
    std::atomic<int> m_calls{0};
    const HSTREAM m_stream;
    const HSYNC m_sync;
};

/// Opens the library on one of SDL's drivers, and closes it again.
class Bass : public testing::Test {
protected:
    Bass() { OpenOutput("dummy"); }
    ~Bass() override { BASS_Free(); }

    static BOOL OpenOutput(const char* driver) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread reads it now
        setenv("SDL_AUDIODRIVER", driver, 1);
        return BASS_Init(-1, 44100, 0, nullptr, nullptr);
    }

    static HSTREAM Open(const std::string& path, DWORD flags = 0) {
        return BASS_StreamCreateFile(FALSE, path.c_str(), 0, 0, flags);
    }

    /// A stereo WAV whose n-th sample frame has n on the left and -n on the right.
    std::string Wav(int sampleFrames) {
        WavBuilder wav;
        for (int i = 0; i < sampleFrames; ++i) {
            wav.samples += WavBuilder::Number(2, static_cast<std::uint32_t>(i)) +
                           WavBuilder::Number(2, static_cast<std::uint32_t>(-i));
        }
        return folder.Write("a.wav", wav.Bytes());
    }

    static QWORD Length(HSTREAM stream) { return BASS_ChannelGetLength(stream, BASS_POS_BYTE); }
    static QWORD Position(HSTREAM stream) { return BASS_ChannelGetPosition(stream, BASS_POS_BYTE); }
    static BOOL SetPosition(HSTREAM stream, QWORD position) {
        return BASS_ChannelSetPosition(stream, position, BASS_POS_BYTE);
    }
    static BOOL GetLevels(HSTREAM stream, float (&levels)[2], float seconds = 0.02F) {
        return BASS_ChannelGetLevelEx(stream, levels, seconds, BASS_LEVEL_STEREO);
    }

    static void AwaitPosition(HSTREAM stream, QWORD position) {
        const auto limit = Clock::now() + kPatience;
        while (Position(stream) < position && Clock::now() < limit) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    TemporaryFolder folder;
};

TEST_F(Bass, CallsFailOnUnknownHandlesAndRefusedFiles) {
    const HSTREAM freed = Open(Wav(10), kDecode);
    ASSERT_EQ(BASS_StreamFree(freed), TRUE);
    for (const DWORD handle : {DWORD{0}, freed}) {
        float levels[2] = {-1, -1};
        char block[8];
        EXPECT_EQ(BASS_StreamFree(handle), FALSE);
        EXPECT_EQ(BASS_ChannelPlay(handle, FALSE), FALSE);
        EXPECT_EQ(BASS_ChannelStop(handle), FALSE);
        EXPECT_EQ(BASS_ChannelIsActive(handle), BASS_ACTIVE_STOPPED);
        EXPECT_FALSE(EndCounter(handle).IsRegistered());
        EXPECT_EQ(Length(handle), kNone);
        EXPECT_EQ(Position(handle), kNone);
        EXPECT_EQ(BASS_ChannelSetPosition(handle, kNone, BASS_POS_SCAN), FALSE);
        EXPECT_LT(BASS_ChannelBytes2Seconds(handle, 0), 0);
        EXPECT_EQ(BASS_ChannelSeconds2Bytes(handle, 0), kNone);
        EXPECT_EQ(GetLevels(handle, levels), FALSE);
        EXPECT_EQ(levels[0], -1);
        EXPECT_EQ(BASS_ChannelGetAttributeEx(handle, BASS_ATTRIB_SCANINFO, nullptr, 0), 0U);
        EXPECT_EQ(BASS_ChannelSetAttributeEx(handle, BASS_ATTRIB_SCANINFO, block, 8), FALSE);
    }
    ASSERT_EQ(mkfifo(folder.Path("fifo").c_str(), 0600), 0);
    for (const std::string& path :
         {folder.Path("fifo"), folder.Path(""), std::string("/dev/zero")}) {
        EXPECT_EQ(Open(path), 0U) << path;
    }
    EXPECT_EQ(BASS_MusicLoad(FALSE, folder.Path("a.wav").c_str(), 0, 0, BASS_MUSIC_PRESCAN, 1), 0U);
    EXPECT_EQ(BASS_GetVersion() >> 16, 0x0204U);
    EXPECT_EQ(BASS_Init(7, 44100, 0, nullptr, nullptr), FALSE);
    EXPECT_EQ(BASS_Free(), TRUE);
    EXPECT_EQ(BASS_Free(), FALSE) << "not open";
}

TEST_F(Bass, PositionsAndSeconds) {
    const std::string path = Wav(1000);
    for (const DWORD flags : {0U, kDecode}) {
        const HSTREAM stream = Open(path, flags);
        EXPECT_EQ(Length(stream), 4000U);
        EXPECT_EQ(SetPosition(stream, 4000), TRUE);
        EXPECT_EQ(SetPosition(stream, 403), TRUE);
        EXPECT_EQ(SetPosition(stream, 4001), FALSE);
        EXPECT_EQ(BASS_ChannelSetPosition(stream, kNone, BASS_POS_SCAN), TRUE);
        EXPECT_EQ(Position(stream), 400U);
        EXPECT_EQ(BASS_ChannelSeconds2Bytes(stream, 0.001), 44U * 4);
        EXPECT_EQ(BASS_ChannelBytes2Seconds(stream, 44100 * 4 + 2), 1 + 0.5 / 44100);
        for (QWORD bytes = 0; bytes < 400'000'000; bytes = bytes * 5 / 4 + 4 - bytes * 5 / 4 % 4) {
            const double seconds = BASS_ChannelBytes2Seconds(stream, bytes);
            EXPECT_EQ(BASS_ChannelSeconds2Bytes(stream, seconds), bytes);
        }
        for (const double seconds : {-0.001, 1e300, double{NAN}}) {
            EXPECT_EQ(BASS_ChannelSeconds2Bytes(stream, seconds), kNone);
        }
    }
}

TEST_F(Bass, LevelsOfStretchesAreRoundedWithoutAddingUp) {
    const HSTREAM stream = Open(Wav(30'000), kDecode);
    float levels[2];
    // The last sample frame of a stretch is its loudest.
    for (int block = 1; block <= 30; ++block) {
        ASSERT_EQ(GetLevels(stream, levels), TRUE);
        EXPECT_EQ(levels[0] * 32768, 882.0F * static_cast<float>(block) - 1);
        EXPECT_EQ(levels[1], levels[0]);
        EXPECT_EQ(Position(stream), 882U * 4 * block);
    }
    // A third of a sample frame at a time, from a place of its own.
    SetPosition(stream, 400);
    for (int step = 1; step <= 300; ++step) {
        EXPECT_EQ(GetLevels(stream, levels, static_cast<float>(1.0 / 3 / 44100)), TRUE);
        EXPECT_EQ(Position(stream), 4U * (100 + (step + 1) / 3));
    }
    for (const float length : {0.0F, 1.001F, NAN}) {
        EXPECT_EQ(GetLevels(stream, levels, length), FALSE);
    }
}

TEST_F(Bass, LevelsEndWithAStretchCutShort) {
    float levels[2];
    for (const int tail : {0, 1}) {
        const HSTREAM stream = Open(Wav(882 + tail), kDecode);
        EXPECT_EQ(GetLevels(stream, levels), TRUE);
        EXPECT_NE(BASS_ChannelIsActive(stream), BASS_ACTIVE_STOPPED);
        EXPECT_EQ(GetLevels(stream, levels), tail);
        EXPECT_EQ(levels[0] * 32768, static_cast<float>(882 + tail - 1));
        EXPECT_EQ(BASS_ChannelIsActive(stream), BASS_ACTIVE_STOPPED);
        EXPECT_EQ(GetLevels(stream, levels), FALSE);
        SetPosition(stream, 0);
        EXPECT_NE(BASS_ChannelIsActive(stream), BASS_ACTIVE_STOPPED);
        EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), FALSE);
    }
}

TEST_F(Bass, SeekInfoFitsOnlyItsOwnFile) {
    const std::string path = folder.Write("a.mp3", Clip("joint-stereo-44100.mp3"));
    const HSTREAM scan = Open(path, kDecode);
    const HSTREAM play = Open(path);
    const HSTREAM elsewhere = Open(folder.Write("b.mp3", Clip("joint-stereo-44100.mp3")));
    const DWORD size = BASS_ChannelGetAttributeEx(scan, BASS_ATTRIB_SCANINFO, nullptr, 0);
    ASSERT_GT(size, 0U);
    std::string info(size, '\0');
    EXPECT_EQ(BASS_ChannelGetAttributeEx(scan, BASS_ATTRIB_SCANINFO, info.data(), size - 1), 0U);
    EXPECT_EQ(BASS_ChannelGetAttributeEx(scan, BASS_ATTRIB_SCANINFO, info.data(), size), size);
    const auto set = [&](HSTREAM stream, DWORD bytes) {
        return BASS_ChannelSetAttributeEx(stream, BASS_ATTRIB_SCANINFO, info.data(), bytes);
    };
    EXPECT_EQ(set(play, size), TRUE);
    EXPECT_EQ(set(play, size - 8), FALSE);
    EXPECT_EQ(set(elsewhere, size), FALSE);
    EXPECT_EQ(BASS_ChannelGetAttributeEx(Open(Wav(1)), BASS_ATTRIB_SCANINFO, nullptr, 0), 0U);
}

/// Expects a recording of the output to hold the samples in stretches that end at these positions,
/// each of them without a gap, and silence around them.
void ExpectStretches(const std::string& recording, const Samples& samples,
                     const std::vector<QWORD>& ends) {
    const std::string all(reinterpret_cast<const char*>(samples.data()), ends.back());
    std::size_t at = 0;
    QWORD begin = 0;
    for (const QWORD end : ends) {
        const std::string stretch = all.substr(begin, end - begin);
        const std::size_t found = recording.find(stretch, at);
        ASSERT_NE(found, std::string::npos) << begin;
        EXPECT_GE(recording.find_first_not_of('\0', at), found);
        at = found + stretch.size();
        begin = end;
    }
    EXPECT_EQ(recording.find_first_not_of('\0', at), std::string::npos);
}

TEST_F(Bass, WhatIsPlayedIsWhatIsDecodedAcrossStops) {
    const std::string mp3 = folder.Write("a.mp3", Clip("joint-stereo-44100.mp3").substr(0, 10'000));
    const std::string recording = folder.Path("played.raw");
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread reads it now
    setenv("SDL_DISKAUDIOFILE", recording.c_str(), 1);
    BASS_Free();
    for (const std::string& path :
         {Wav(40'000), mp3, folder.Write("b.mp3", Clip("mono-8000.mp3").substr(0, 2500))}) {
        ASSERT_EQ(OpenOutput("disk"), TRUE);
        const HSTREAM stream = Open(path);
        EndCounter end(stream);
        std::vector<QWORD> ends;
        for (const QWORD part : {4, 2}) {
            EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), TRUE);
            AwaitPosition(stream, Length(stream) / part);
            EXPECT_EQ(BASS_ChannelStop(stream), TRUE);
            EXPECT_EQ(BASS_ChannelIsActive(stream), BASS_ACTIVE_STOPPED);
            ends.push_back(Position(stream));
            EXPECT_GE(ends.back(), Length(stream) / part);
            EXPECT_LT(ends.back(), Length(stream));
        }
        EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), TRUE);
        ASSERT_TRUE(end.Await(1));
        ends.push_back(Position(stream));
        EXPECT_EQ(ends.back(), Length(stream));
        BASS_Free();
        ExpectStretches(TemporaryFolder::Read(recording), DecodeFile(path), ends);
    }
}

TEST_F(Bass, EndIsReportedOncePerSyncUnlessTheStreamPlaysAgain) {
    const HSTREAM stream = Open(Wav(4410));
    EXPECT_EQ(BASS_ChannelSetSync(stream, BASS_SYNC_END, 0, nullptr, nullptr), 0U);
    EndCounter first(stream);
    EndCounter second(stream);
    first.action = [&] {
        EXPECT_EQ(BASS_ChannelIsActive(stream), BASS_ACTIVE_STOPPED);
        EXPECT_EQ(Position(stream), 4410U * 4);
        if (first.Calls() == 0) {
            EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), TRUE);
        }
    };
    for (const int plays : {1, 2}) {
        const auto begin = Clock::now();
        EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), TRUE);
        ASSERT_TRUE(second.Await(plays));
        EXPECT_EQ(first.Calls(), plays + 1);
        EXPECT_EQ(second.Calls(), plays);
        EXPECT_GT(Clock::now() - begin, std::chrono::milliseconds(100)) << "the whole stream";
    }
}

TEST_F(Bass, PositionMovesAtTheRightPaceWithAndWithoutADevice) {
    for (const char* driver : {"dummy", "there is no such driver"}) {
        SCOPED_TRACE(driver);
        BASS_Free();
        EXPECT_EQ(OpenOutput(driver), driver == std::string("dummy"));
        const HSTREAM stream = Open(Wav(200'000));
        EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), TRUE);
        AwaitPosition(stream, 4410 * 4);
        const QWORD from = Position(stream);
        const auto begin = Clock::now();
        AwaitPosition(stream, from + 22050 * 4);
        const std::chrono::duration<double> took = Clock::now() - begin;
        // Later only by as much as a busy machine makes it wait.
        EXPECT_GT(took.count(), 0.45);
        EXPECT_LT(took.count(), 5.0);
    }
}

TEST_F(Bass, SeekingAndRestartingWhilePlaying) {
    const HSTREAM stream = Open(folder.Write("a.mp3", Clip("joint-stereo-44100.mp3", 20)));
    const QWORD length = Length(stream);
    EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), TRUE);
    for (const QWORD part : {3, 1, 2}) {
        const QWORD target = length / 16 / 4 * 4 * part * 4;
        EXPECT_EQ(SetPosition(stream, target), TRUE);
        EXPECT_GE(Position(stream), target);
        AwaitPosition(stream, target + 1000);
        EXPECT_LT(Position(stream), target + length / 8);
        EXPECT_EQ(BASS_ChannelIsActive(stream), BASS_ACTIVE_PLAYING);
    }
    EXPECT_EQ(BASS_ChannelPlay(stream, TRUE), TRUE);
    EXPECT_LT(Position(stream), length / 8);
    EndCounter end(stream);
    SetPosition(stream, length);
    EXPECT_TRUE(end.Await(1));
}

TEST_F(Bass, FreeWaitsForARunningSyncAndNoneComesAfter) {
    const HSTREAM stream = Open(Wav(441));
    std::promise<void> entered;
    std::promise<void> leave;
    EndCounter first(stream);
    EndCounter second(stream);
    first.action = [&] {
        entered.set_value();
        leave.get_future().wait();
    };
    BASS_ChannelPlay(stream, FALSE);
    entered.get_future().wait();
    auto freed = std::async(std::launch::async, [&] { return BASS_StreamFree(stream); });
    while (Length(stream) != kNone) { // once the handle is gone the freeing has begun
        std::this_thread::yield();
    }
    EXPECT_EQ(freed.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    leave.set_value();
    EXPECT_EQ(freed.get(), TRUE);
    EXPECT_EQ(first.Calls(), 1);
    EXPECT_EQ(second.Calls(), 0);
}

TEST_F(Bass, SyncMayFreeItsOwnStream) {
    const HSTREAM stream = Open(Wav(441));
    EndCounter end(stream);
    end.action = [&] { EXPECT_EQ(BASS_StreamFree(stream), TRUE); };
    BASS_ChannelPlay(stream, FALSE);
    EXPECT_TRUE(end.Await(1));
    EXPECT_EQ(BASS_StreamFree(stream), FALSE);
}

TEST_F(Bass, PlaysStreamsWithoutSamplesAndOfManyChannels) {
    const WavBuilder twelve{.channels = 12, .samples = WavBuilder::Pattern(24 * 500)};
    for (const WavBuilder& wav : {WavBuilder{}, twelve}) {
        const HSTREAM stream = Open(folder.Write("a.wav", wav.Bytes()));
        EXPECT_EQ(BASS_ChannelStop(stream), TRUE) << "not playing is no error";
        EndCounter end(stream);
        EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), TRUE);
        EXPECT_TRUE(end.Await(1));
        EXPECT_EQ(Position(stream), Length(stream));
    }
}

TEST_F(Bass, EverythingAtOnceFromManyThreads) {
    const std::string path = folder.Write("a.mp3", Clip("joint-stereo-44100.mp3", 10));
    const HSTREAM played = Open(path);
    const HSTREAM decoded = Open(path, kDecode);
    EndCounter end(played);
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] {
            float levels[2];
            for (int round = 0; round < 30; ++round) {
                BASS_ChannelPlay(played, round % 3 == 0);
                SetPosition(played, Length(played) - 10'000);
                Position(played);
                if (round % 4 == i) {
                    BASS_ChannelStop(played);
                }
                GetLevels(decoded, levels, 0.5F);
                SetPosition(decoded, static_cast<QWORD>(round) * 100'000);
                const HSTREAM own = Open(path, round % 2 == 0 ? kDecode : 0);
                BASS_ChannelPlay(own, FALSE);
                GetLevels(own, levels);
                EXPECT_EQ(BASS_StreamFree(own), TRUE);
                if (i == 0 && round == 25) {
                    EXPECT_EQ(BASS_StreamFree(decoded), TRUE);
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(BASS_StreamFree(played), TRUE);
}

} // namespace
