#include "audio/bass.h"
#include "tests/audio/Samples.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <future>
#include <mutex>
#include <span>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPatience = std::chrono::seconds(30);

/// Counts the calls of an end sync, and does what a test wants done there.
class EndCounter {
public:
    HSYNC Register(HSTREAM stream) {
        return BASS_ChannelSetSync(stream, BASS_SYNC_END, 0, &EndCounter::Callback, this);
    }

    /// @return false when there were not so many calls in time
    bool Await(int calls) {
        std::unique_lock lock(m_mutex);
        return m_called.wait_for(lock, kPatience, [&] { return m_calls >= calls; });
    }

    int Calls() {
        const std::lock_guard lock(m_mutex);
        return m_calls;
    }

    std::function<void(HSYNC, HSTREAM)> action = [](HSYNC, HSTREAM) {};

private:
    static void Callback(HSYNC sync, DWORD stream, DWORD data, void* user) {
        EXPECT_EQ(data, 0U);
        auto* self = static_cast<EndCounter*>(user);
        self->action(sync, stream);
        const std::lock_guard lock(self->m_mutex);
        ++self->m_calls;
        self->m_called.notify_all();
    }

    std::mutex m_mutex;
    std::condition_variable m_called;
    int m_calls = 0;
};

/// Opens the library on one of SDL's drivers; every test closes it again.
class BassPlayback : public testing::Test {
protected:
    void TearDown() override { BASS_Free(); }

    static BOOL OpenOutput(const char* driver) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread reads it now
        setenv("SDL_AUDIODRIVER", driver, 1);
        return BASS_Init(-1, 44100, 0, nullptr, nullptr);
    }

    HSTREAM Open(const std::string& path, DWORD flags = 0) {
        const HSTREAM stream = BASS_StreamCreateFile(FALSE, path.c_str(), 0, 0, flags);
        EXPECT_NE(stream, 0U);
        return stream;
    }

    /// A stereo WAV of so many sample frames, none of which is silent.
    std::string Wav(std::size_t sampleFrames) {
        std::string samples = WavBuilder::Pattern(sampleFrames * 4);
        for (std::size_t at = 0; at < samples.size(); at += 2) {
            samples[at] |= 1;
        }
        return folder.Write("a.wav", WavBuilder{.samples = samples}.Bytes());
    }

    static void AwaitPosition(HSTREAM stream, QWORD position) {
        const auto limit = Clock::now() + kPatience;
        while (BASS_ChannelGetPosition(stream, BASS_POS_BYTE) < position && Clock::now() < limit) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    static QWORD Position(HSTREAM stream) { return BASS_ChannelGetPosition(stream, BASS_POS_BYTE); }

    TemporaryFolder folder;
};

std::span<const std::int16_t> WithoutLeadingSilence(std::span<const std::int16_t> samples) {
    const auto begin = std::find_if(samples.begin(), samples.end(),
                                    [](std::int16_t sample) { return sample != 0; });
    return samples.subspan(static_cast<std::size_t>(begin - samples.begin()));
}

/// Expects a recording of the output to hold the samples in stretches that end at these positions,
/// each of them without a gap, and silence around them.
void ExpectStretches(const std::string& recording, std::span<const std::int16_t> samples,
                     const std::vector<QWORD>& ends) {
    Samples all(recording.size() / sizeof(std::int16_t));
    std::memcpy(all.data(), recording.data(), all.size() * sizeof(std::int16_t));
    std::span<const std::int16_t> recorded(all);
    std::size_t begin = 0;
    for (const QWORD position : ends) {
        const std::size_t end = position / sizeof(std::int16_t);
        const auto stretch = WithoutLeadingSilence(samples.subspan(begin, end - begin));
        recorded = WithoutLeadingSilence(recorded);
        ASSERT_GE(recorded.size(), stretch.size());
        EXPECT_TRUE(std::equal(stretch.begin(), stretch.end(), recorded.begin())) << begin;
        recorded = recorded.subspan(stretch.size());
        begin = end;
    }
    EXPECT_TRUE(WithoutLeadingSilence(recorded).empty());
}

TEST_F(BassPlayback, WhatIsPlayedIsWhatIsDecodedAcrossStops) {
    const std::string mp3 = folder.Write("a.mp3", Clip("joint-stereo-44100.mp3").substr(0, 10'000));
    const std::string recording = folder.Path("played.raw");
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread reads it now
    setenv("SDL_DISKAUDIOFILE", recording.c_str(), 1);
    for (const std::string& path :
         {Wav(40'000), mp3, folder.Write("b.mp3", Clip("mono-8000.mp3").substr(0, 2500))}) {
        ASSERT_EQ(OpenOutput("disk"), TRUE);
        const HSTREAM stream = Open(path);
        EndCounter end;
        end.Register(stream);
        const QWORD length = BASS_ChannelGetLength(stream, BASS_POS_BYTE);
        std::vector<QWORD> ends;
        for (const QWORD stop : {length / 4, length / 2}) {
            EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), TRUE);
            AwaitPosition(stream, stop);
            EXPECT_EQ(BASS_ChannelStop(stream), TRUE);
            EXPECT_EQ(BASS_ChannelIsActive(stream), BASS_ACTIVE_STOPPED);
            const QWORD stopped = Position(stream);
            EXPECT_GE(stopped, stop);
            EXPECT_LT(stopped, length);
            ends.push_back(stopped);
        }
        EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), TRUE);
        ASSERT_TRUE(end.Await(1));
        EXPECT_EQ(Position(stream), length);
        ends.push_back(length);
        BASS_Free();
        ExpectStretches(TemporaryFolder::Read(recording), DecodeFile(path), ends);
    }
}

TEST_F(BassPlayback, EndIsReportedOncePerSyncAndPlayingBeginsAnew) {
    OpenOutput("dummy");
    const HSTREAM stream = Open(Wav(4410));
    EndCounter first;
    EndCounter second;
    first.action = [](HSYNC, HSTREAM ended) {
        EXPECT_EQ(BASS_ChannelIsActive(ended), BASS_ACTIVE_STOPPED);
        EXPECT_EQ(Position(ended), 4410U * 4);
    };
    const HSYNC one = first.Register(stream);
    const HSYNC two = second.Register(stream);
    EXPECT_NE(one, 0U);
    EXPECT_NE(one, two);
    second.action = [&](HSYNC sync, HSTREAM ended) {
        EXPECT_EQ(sync, two);
        EXPECT_EQ(ended, stream);
    };
    BASS_ChannelSetPosition(stream, 2000 * 4, BASS_POS_BYTE);
    for (const int plays : {1, 2, 3}) {
        const auto begin = Clock::now();
        EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), TRUE);
        ASSERT_TRUE(second.Await(plays));
        EXPECT_EQ(first.Calls(), plays);
        if (plays > 1) {
            EXPECT_GT(Clock::now() - begin, std::chrono::milliseconds(100)) << "the whole stream";
        }
    }
    EXPECT_EQ(BASS_ChannelSetSync(
                  stream, BASS_SYNC_END + 1, 0, [](HSYNC, DWORD, DWORD, void*) {}, nullptr),
              0U);
}

TEST_F(BassPlayback, EndIsNotReportedOnceTheStreamPlaysAgain) {
    OpenOutput("dummy");
    const HSTREAM stream = Open(Wav(4410));
    EndCounter first;
    EndCounter second;
    first.action = [&](HSYNC, HSTREAM ended) {
        EXPECT_EQ(second.Calls(), 0);
        if (first.Calls() == 0) {
            EXPECT_EQ(BASS_ChannelPlay(ended, FALSE), TRUE);
        }
    };
    first.Register(stream);
    second.Register(stream);
    BASS_ChannelPlay(stream, FALSE);
    ASSERT_TRUE(second.Await(1));
    EXPECT_EQ(first.Calls(), 2);
    EXPECT_EQ(second.Calls(), 1);
}

TEST_F(BassPlayback, PositionMovesAtTheRightPaceWithAndWithoutADevice) {
    for (const char* driver : {"dummy", "there is no such driver"}) {
        SCOPED_TRACE(driver);
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
        BASS_Free();
    }
}

TEST_F(BassPlayback, SeekingAndRestartingWhilePlaying) {
    OpenOutput("dummy");
    const HSTREAM stream = Open(folder.Write("a.mp3", RepeatedClip("joint-stereo-44100.mp3", 20)));
    const QWORD length = BASS_ChannelGetLength(stream, BASS_POS_BYTE);
    EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), TRUE);
    for (const QWORD part : {3, 1, 2}) {
        const QWORD target = length / 16 / 4 * 4 * part * 4;
        EXPECT_EQ(BASS_ChannelSetPosition(stream, target, BASS_POS_BYTE), TRUE);
        EXPECT_GE(Position(stream), target);
        AwaitPosition(stream, target + 1000);
        EXPECT_LT(Position(stream), target + length / 8);
        EXPECT_EQ(BASS_ChannelIsActive(stream), BASS_ACTIVE_PLAYING);
    }
    EXPECT_EQ(BASS_ChannelPlay(stream, TRUE), TRUE);
    EXPECT_LT(Position(stream), length / 8);
    EndCounter end;
    end.Register(stream);
    BASS_ChannelSetPosition(stream, length, BASS_POS_BYTE);
    EXPECT_TRUE(end.Await(1));
}

TEST_F(BassPlayback, FreeWaitsForARunningSyncAndNoneComesAfter) {
    OpenOutput("dummy");
    const HSTREAM stream = Open(Wav(441));
    std::promise<void> entered;
    std::promise<void> leave;
    EndCounter first;
    EndCounter second;
    first.action = [&](HSYNC, HSTREAM) {
        entered.set_value();
        leave.get_future().wait();
    };
    first.Register(stream);
    second.Register(stream);
    BASS_ChannelPlay(stream, FALSE);
    entered.get_future().wait();
    auto freed = std::async(std::launch::async, [&] { return BASS_StreamFree(stream); });
    // Once the handle is gone the freeing has begun.
    while (BASS_ChannelGetLength(stream, BASS_POS_BYTE) != ~QWORD{0}) {
        std::this_thread::yield();
    }
    EXPECT_EQ(freed.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    leave.set_value();
    EXPECT_EQ(freed.get(), TRUE);
    EXPECT_EQ(first.Calls(), 1);
    EXPECT_EQ(second.Calls(), 0);
}

TEST_F(BassPlayback, SyncMayFreeItsOwnStream) {
    OpenOutput("dummy");
    const HSTREAM stream = Open(Wav(441));
    EndCounter first;
    EndCounter second;
    first.action = [](HSYNC, HSTREAM ended) { EXPECT_EQ(BASS_StreamFree(ended), TRUE); };
    first.Register(stream);
    second.Register(stream);
    BASS_ChannelPlay(stream, FALSE);
    EXPECT_TRUE(first.Await(1));
    EXPECT_EQ(BASS_StreamFree(stream), FALSE);
    EXPECT_EQ(second.Calls(), 0);
}

TEST_F(BassPlayback, OddStreams) {
    EXPECT_EQ(BASS_Init(7, 44100, 0, nullptr, nullptr), FALSE);
    EXPECT_EQ(BASS_Free(), FALSE) << "not open";
    OpenOutput("dummy");
    EndCounter end;
    const WavBuilder empty{};
    const WavBuilder twelve{.channels = 12,
                            .bytesPerSecond = 1058400,
                            .blockAlign = 24,
                            .samples = WavBuilder::Pattern(24 * 500)};
    int calls = 0;
    for (const WavBuilder& wav : {empty, twelve}) {
        const HSTREAM stream = Open(folder.Write(std::to_string(calls), wav.Bytes()));
        EXPECT_EQ(BASS_ChannelStop(stream), TRUE) << "not playing is no error";
        end.Register(stream);
        EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), TRUE);
        EXPECT_TRUE(end.Await(++calls));
        EXPECT_EQ(Position(stream), BASS_ChannelGetLength(stream, BASS_POS_BYTE));
    }
}

TEST_F(BassPlayback, EverythingAtOnceFromManyThreads) {
    OpenOutput("dummy");
    const std::string path = folder.Write("a.mp3", Clip("joint-stereo-44100.mp3"));
    EndCounter end;
    std::vector<std::thread> threads;
    threads.reserve(4);
    const HSTREAM shared = Open(path);
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&, i] {
            for (int round = 0; round < 30; ++round) {
                BASS_ChannelPlay(shared, round % 3 == 0);
                BASS_ChannelSetPosition(shared, 695'000, BASS_POS_BYTE);
                Position(shared);
                end.Register(shared);
                if (round % 4 == i) {
                    BASS_ChannelStop(shared);
                }
                const HSTREAM own = Open(path);
                BASS_ChannelPlay(own, FALSE);
                BASS_StreamFree(own);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(BASS_StreamFree(shared), TRUE);
}

} // namespace
