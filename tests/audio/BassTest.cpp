#include "audio/bass.h"

#include "tests/audio/Samples.h"
#include "tests/support/WavBuilder.h"

#include <atomic>
#include <chrono>
#include <cmath>
#include <cstring>
#include <functional>
#include <future>
#include <semaphore>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

constexpr QWORD kNone = ~QWORD{0};
constexpr DWORD kDecode = BASS_STREAM_DECODE;

/// Counts the calls of an end sync, and does what a test wants done there.
struct EndCounter {
    explicit EndCounter(HSTREAM stream) {
        const auto callback = [](HSYNC, DWORD, DWORD, void* user) {
            auto* self = static_cast<EndCounter*>(user);
            self->action();
            ++self->calls;
            self->unseen.release();
        };
        BASS_ChannelSetSync(stream, BASS_SYNC_END, 0, callback, this);
    }

    std::function<void()> action = [] {};
    std::atomic<int> calls{0};
    std::counting_semaphore<> unseen{0}; ///< of the calls, those that nobody waited for yet
};

/// Opens the library on one of SDL's drivers, and closes it again.
class Bass : public testing::Test {
protected:
    void SetUp() override { OpenOutput("dummy"); }
    void TearDown() override { BASS_Free(); }

    static BOOL OpenOutput(const char* driver) {
        BASS_Free();
        // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread reads it now
        setenv("SDL_AUDIODRIVER", driver, 1);
        return BASS_Init(-1, 44100, 0, nullptr, nullptr);
    }

    static HSTREAM Open(const std::string& path, DWORD flags = 0) {
        return BASS_StreamCreateFile(FALSE, path.c_str(), 0, 0, flags);
    }

    std::string Wav(std::size_t sampleFrames, std::uint16_t channels = 2) const {
        const WavBuilder wav{.channels = channels,
                             .samples = WavBuilder::Pattern(sampleFrames * channels * 2)};
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
        while (Position(stream) < position) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    TemporaryFolder folder;
};

TEST_F(Bass, CallsFailOnAFreedHandle) {
    const HSTREAM freed = Open(Wav(10), kDecode);
    ASSERT_EQ(BASS_StreamFree(freed), TRUE);
    float levels[2];
    EXPECT_EQ(BASS_StreamFree(freed), FALSE);
    EXPECT_EQ(BASS_ChannelPlay(freed, FALSE), FALSE);
    EXPECT_EQ(BASS_ChannelStop(freed), FALSE);
    EXPECT_EQ(BASS_ChannelIsActive(freed), BASS_ACTIVE_STOPPED);
    EXPECT_EQ(Length(freed), kNone);
    EXPECT_EQ(Position(freed), kNone);
    EXPECT_EQ(SetPosition(freed, 0), FALSE);
    EXPECT_EQ(BASS_ChannelSeconds2Bytes(freed, 0), kNone);
    EXPECT_EQ(GetLevels(freed, levels), FALSE);
}

TEST_F(Bass, PositionsAndSeconds) {
    const HSTREAM stream = Open(Wav(1000));
    EXPECT_EQ(SetPosition(stream, 403), TRUE);
    EXPECT_EQ(Position(stream), 400U);
    EXPECT_EQ(BASS_ChannelSeconds2Bytes(stream, 0.001), 44U * 4);
    for (QWORD bytes = 0; bytes < 400'000'000; bytes = bytes * 5 / 4 + 4 - bytes * 5 / 4 % 4) {
        const double seconds = BASS_ChannelBytes2Seconds(stream, bytes);
        EXPECT_EQ(seconds, static_cast<double>(bytes) / 4 / 44100);
        EXPECT_EQ(BASS_ChannelSeconds2Bytes(stream, seconds), bytes);
    }
    for (const double seconds : {-0.001, 1e300, double{NAN}}) {
        EXPECT_EQ(BASS_ChannelSeconds2Bytes(stream, seconds), kNone);
    }
}

TEST_F(Bass, LevelsAreThoseOfStretchesWhoseRoundingDoesNotAddUp) {
    // 34 stretches of 20 ms end with the stream, the other ones do not.
    constexpr std::size_t kBegin = 12;
    for (const std::uint16_t channels : {std::uint16_t{1}, std::uint16_t{2}}) {
        const std::string path = Wav(kBegin + 34 * 882, channels);
        const Samples samples = DecodeFile(path);
        const HSTREAM stream = Open(path, kDecode);
        for (const float seconds : {0.02F, 0.5F, 4e-4F, 1.0F / 3 / 44100}) {
            float levels[2];
            EXPECT_EQ(SetPosition(stream, kBegin * channels * 2), TRUE);
            EXPECT_NE(BASS_ChannelIsActive(stream), BASS_ACTIVE_STOPPED);
            EXPECT_EQ(GetLevels(stream, levels, 1.001F), FALSE);
            std::size_t at = kBegin * channels;
            for (int step = 1; at < samples.size(); ++step) {
                const auto length = std::lround(step * double{seconds} * 44100);
                const std::size_t asked = (kBegin + static_cast<std::size_t>(length)) * channels;
                const std::size_t end = std::min(asked, samples.size());
                int peaks[2] = {0, 0};
                for (; at < end; ++at) {
                    int& peak = peaks[at % channels];
                    peak = std::max(peak, std::abs(int{samples[at]}));
                }
                ASSERT_EQ(GetLevels(stream, levels, seconds), TRUE);
                ASSERT_EQ(levels[0] * 32768, peaks[0]);
                ASSERT_EQ(levels[1] * 32768, peaks[channels - 1]);
                ASSERT_EQ(Position(stream), end * 2);
                ASSERT_EQ(BASS_ChannelIsActive(stream) == BASS_ACTIVE_STOPPED, asked > end);
            }
            EXPECT_EQ(GetLevels(stream, levels, seconds), FALSE);
            EXPECT_EQ(BASS_ChannelIsActive(stream), BASS_ACTIVE_STOPPED);
        }
    }
}

TEST_F(Bass, WhatIsPlayedIsWhatIsDecodedAcrossStops) {
    const std::string recording = folder.Path("played.raw");
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread reads it now
    setenv("SDL_DISKAUDIOFILE", recording.c_str(), 1);
    const std::string mp3 = folder.Write("a.mp3", Clip("joint-stereo-44100.mp3").substr(0, 10'000));
    const std::string mono = folder.Write("b.mp3", Clip("mono-8000.mp3").substr(0, 2500));
    for (const std::string& path : {mp3, mono, Wav(40'000)}) {
        ASSERT_EQ(OpenOutput("disk"), TRUE);
        const HSTREAM stream = Open(path);
        EndCounter end(stream);
        for (const QWORD part : {8U, 4U}) {
            EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), TRUE);
            AwaitPosition(stream, Length(stream) / part);
            EXPECT_EQ(BASS_ChannelStop(stream), TRUE);
            EXPECT_EQ(BASS_ChannelIsActive(stream), BASS_ACTIVE_STOPPED);
        }
        Samples expected = DecodeFile(path);
        const Samples whole = expected;
        expected.resize(whole.size() * Position(stream) / Length(stream));
        expected.insert(expected.end(), whole.begin(), whole.end());
        EXPECT_EQ(BASS_ChannelPlay(stream, TRUE), TRUE);
        end.unseen.acquire();
        EXPECT_EQ(Position(stream), Length(stream));
        BASS_Free();
        const std::string bytes = TemporaryFolder::Read(recording);
        Samples played(bytes.size() / sizeof played[0]);
        std::memcpy(played.data(), bytes.data(), bytes.size());
        // The device goes on in silence while nothing plays, and where a busy machine is late.
        std::erase(played, 0);
        std::erase(expected, 0);
        EXPECT_EQ(played, expected);
    }
}

TEST_F(Bass, EndIsReportedOncePerSyncWhichMayPlayTheStreamAgainOrFreeIt) {
    // Without a device a period is 20 ms: the end is heard when the seventh is asked for.
    OpenOutput("there is no such driver");
    const HSTREAM stream = Open(Wav(4410, 5)); // played as two
    EndCounter first(stream);
    EndCounter second(stream);
    first.action = [&] {
        EXPECT_EQ(BASS_ChannelIsActive(stream), BASS_ACTIVE_STOPPED);
        EXPECT_EQ(Position(stream), Length(stream));
        if (first.calls == 0) {
            EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), TRUE);
        }
    };
    second.action = [&] {
        if (second.calls == 1) {
            EXPECT_EQ(BASS_StreamFree(stream), TRUE);
        }
    };
    for (const int plays : {1, 2}) {
        const auto begin = Clock::now();
        EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), TRUE);
        second.unseen.acquire();
        EXPECT_EQ(first.calls, plays + 1);
        EXPECT_EQ(second.calls, plays);
        EXPECT_GE(Clock::now() - begin, std::chrono::milliseconds(120));
    }
}

TEST_F(Bass, PositionMovesAtTheRightPaceFromAnyPlaceWithAndWithoutADevice) {
    for (const char* driver : {"dummy", "there is no such driver"}) {
        SCOPED_TRACE(driver);
        EXPECT_EQ(OpenOutput(driver), driver == std::string("dummy"));
        const HSTREAM stream = Open(folder.Write("a.mp3", Clip("mono-8000.mp3", 20)));
        const auto begin = Clock::now();
        EXPECT_EQ(SetPosition(stream, 60 * 16000), TRUE);
        EXPECT_EQ(BASS_ChannelPlay(stream, FALSE), TRUE);
        AwaitPosition(stream, 60 * 16000 + 8000);
        const std::chrono::duration<double> took = Clock::now() - begin;
        // What a device asks for is heard when it asks again, 20 ms later or more; much later only
        // if a busy machine makes it wait.
        EXPECT_GT(took.count(), 0.51);
        EXPECT_LT(took.count(), 5.0);
        EXPECT_EQ(SetPosition(stream, 10 * 16000), TRUE);
        EXPECT_LT(Position(stream), 60 * 16000);
        EndCounter end(stream);
        EXPECT_EQ(SetPosition(stream, Length(stream)), TRUE);
        end.unseen.acquire();
    }
}

TEST_F(Bass, FreeWaitsForARunningSyncAndNoneComesAfter) {
    const HSTREAM stream = Open(Wav(0));
    std::binary_semaphore entered{0};
    std::binary_semaphore leave{0};
    EndCounter first(stream);
    EndCounter second(stream);
    first.action = [&] {
        entered.release();
        leave.acquire();
    };
    BASS_ChannelPlay(stream, FALSE);
    entered.acquire();
    auto freed = std::async(std::launch::async, [&] { return BASS_StreamFree(stream); });
    while (Length(stream) != kNone) { // once the handle is gone the freeing has begun
        std::this_thread::yield();
    }
    EXPECT_EQ(freed.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    leave.release();
    EXPECT_EQ(freed.get(), TRUE);
    EXPECT_EQ(first.calls, 1);
    EXPECT_EQ(second.calls, 0);
}

TEST_F(Bass, EverythingAtOnceFromManyThreads) {
    const std::string path = folder.Write("a.mp3", Clip("joint-stereo-44100.mp3", 10));
    const HSTREAM played = Open(path);
    const HSTREAM decoded = Open(path, kDecode);
    EndCounter end(played);
    const auto work = [&](int thread) {
        float levels[2];
        for (int round = 0; round < 30; ++round) {
            BASS_ChannelPlay(played, round % 3 == 0);
            SetPosition(played, Length(played) - 10'000);
            EXPECT_LE(Position(played), Length(played));
            if (round % 4 == thread) {
                BASS_ChannelStop(played);
            }
            GetLevels(decoded, levels, 0.5F);
            SetPosition(decoded, static_cast<QWORD>(round) * 100'000);
            const HSTREAM own = Open(path, round % 2 == 0 ? kDecode : 0);
            BASS_ChannelPlay(own, FALSE);
            GetLevels(own, levels);
            EXPECT_EQ(BASS_StreamFree(own), TRUE);
            if (thread == 0 && round == 25) {
                EXPECT_EQ(BASS_StreamFree(decoded), TRUE);
            }
        }
    };
    std::future<void> threads[4];
    for (int thread = 0; thread < 4; ++thread) {
        threads[thread] = std::async(std::launch::async, work, thread);
    }
    for (const auto& thread : threads) {
        thread.wait();
    }
    EXPECT_EQ(BASS_StreamFree(played), TRUE);
}

} // namespace
