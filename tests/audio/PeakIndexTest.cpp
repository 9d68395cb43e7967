#include "audio/FrameIndexCache.h"
#include "audio/PeakMeter.h"
#include "audio/bass.h"
#include "tests/audio/Samples.h"
#include "tests/support/WavBuilder.h"

#include <atomic>
#include <filesystem>
#include <random>
#include <thread>

namespace {

constexpr QWORD kNone = ~QWORD{0};

/// What a measurement answers, and where it ends.
struct Measured {
    float left = 0;
    float right = 0;
    QWORD end = 0;
    DWORD active = 0;
    bool operator==(const Measured&) const = default;
};

/// A stretch to measure, after those before it or from a place of its own.
struct Step {
    std::optional<QWORD> position;
    float seconds = 0;
};

/// A file that somebody writes to while it is read, once, if told.
class ChangingFile : public File {
public:
    explicit ChangingFile(const std::string& path)
        : File(OpenRegularFile(path.c_str())), m_path(path) {}

    ReadResult ReadAt(std::int64_t offset, void* to, std::size_t bytes) const override {
        if (m_isToChange.exchange(false)) {
            std::ofstream(m_path, std::ios::app) << "more";
        }
        return File::ReadAt(offset, to, bytes);
    }

    mutable std::atomic<bool> m_isToChange{false};

private:
    const std::string m_path;
};

class PeakIndexes : public testing::Test {
protected:
    void TearDown() override { BASS_KeepLevels(TRUE); }

    static HSTREAM Open(const std::string& path) {
        return BASS_StreamCreateFile(FALSE, path.c_str(), 0, 0, BASS_STREAM_DECODE);
    }
    static QWORD Length(HSTREAM stream) { return BASS_ChannelGetLength(stream, BASS_POS_BYTE); }

    static Measured Measure(HSTREAM stream, const Step& step) {
        if (step.position) {
            BASS_ChannelSetPosition(stream, *step.position, BASS_POS_BYTE);
        }
        float levels[2] = {-1, -1};
        BASS_ChannelGetLevelEx(stream, levels, step.seconds, BASS_LEVEL_STEREO);
        return {levels[0], levels[1], BASS_ChannelGetPosition(stream, BASS_POS_BYTE),
                BASS_ChannelIsActive(stream)};
    }

    static std::vector<Measured> MeasureAll(const std::string& path,
                                            const std::vector<Step>& steps) {
        const HSTREAM stream = Open(path);
        std::vector<Measured> all;
        all.reserve(steps.size());
        for (const Step& step : steps) {
            all.push_back(Measure(stream, step));
        }
        BASS_StreamFree(stream);
        return all;
    }

    /// Scans at several widths, and stretches and jumps at random.
    static std::vector<std::vector<Step>> Works(QWORD length, double seconds) {
        std::mt19937 random(7);
        std::vector<std::vector<Step>> works;
        for (const double width : {0.02, 0.000'3, 0.012'7, 0.123'4, 1.0}) {
            const double most = std::min(seconds / width + 2, 1000.0);
            works.emplace_back(static_cast<std::size_t>(most), Step{{}, static_cast<float>(width)});
        }
        auto& jumps = works.emplace_back();
        for (int i = 0; i < 60; ++i) {
            const float stretch = std::ldexp(1.0F, -static_cast<int>(random() % 15));
            const bool isApart = random() % 3 != 0;
            jumps.push_back({isApart ? std::optional<QWORD>(random() % (length + 1)) : std::nullopt,
                             stretch * static_cast<float>(1 + random() % 100) / 100.0F});
        }
        return works;
    }

    /// Expects of a file that nothing depends on what was measured before, nor by whom.
    void ExpectSame(const std::string& path) {
        SCOPED_TRACE(path);
        BASS_KeepLevels(FALSE);
        const HSTREAM plain = Open(path);
        if (plain == 0) {
            return;
        }
        const auto works = Works(Length(plain), BASS_ChannelBytes2Seconds(plain, Length(plain)));
        BASS_StreamFree(plain);
        std::vector<std::vector<Measured>> expected;
        expected.reserve(works.size());
        for (const auto& work : works) {
            expected.push_back(MeasureAll(path, work));
        }
        // After another first one for each file, which is stopped in its middle.
        BASS_KeepLevels(TRUE);
        const auto& first = works[m_files++ % works.size()];
        MeasureAll(path, {first.begin(), first.begin() + std::ssize(first) / 2});
        for (std::size_t work = 0; work < works.size(); ++work) {
            ASSERT_EQ(MeasureAll(path, works[work]), expected[work]) << "work " << work;
        }
    }

    TemporaryFolder folder;

private:
    std::size_t m_files = 0;
};

TEST_F(PeakIndexes, AnswerWhatDecodingAnswers) {
    for (const auto& clip : std::filesystem::directory_iterator(KLIPRA_CLIPS)) {
        if (clip.path().extension() == ".mp3") {
            const std::string name = clip.path().filename();
            ExpectSame(folder.Write(name, Clip(name, 3)));
        }
    }
    for (const auto channels : std::initializer_list<std::uint16_t>{1, 2, 3, 5, 8}) {
        for (const std::uint32_t rateHz : {1U, 44U, 8'000U, 44'100U, 192'000U}) {
            const std::size_t sampleFrames = std::max<std::size_t>(rateHz, 100) * 3 + 17;
            const WavBuilder wav{.channels = channels,
                                 .rateHz = rateHz,
                                 .samples = WavBuilder::Pattern(sampleFrames * channels * 2)};
            ExpectSame(folder.Write("a.wav", wav.Bytes()));
        }
    }
}

TEST_F(PeakIndexes, OfDamagedFilesAnswerWhatDecodingAnswers) {
    for (const auto& file : std::filesystem::directory_iterator(KLIPRA_CORPUS)) {
        ASSERT_NO_FATAL_FAILURE(ExpectSame(file.path()));
    }
    std::mt19937 random(3);
    for (int i = 0; i < 6; ++i) {
        std::string bytes = Clip("vbr-xing-48000.mp3", 20);
        for (int change = 0; change < 40; ++change) {
            bytes[random() % bytes.size()] = static_cast<char>(random());
        }
        ASSERT_NO_FATAL_FAILURE(ExpectSame(folder.Write("damaged.mp3", bytes)));
    }
}

TEST_F(PeakIndexes, GrowWithTheFirstScanAndAreContinuedByTheNextUntilTheFileChanges) {
    const std::string path = folder.Write("a", Clip("joint-stereo-44100.mp3", 20));
    const std::vector<Step> scan(400, Step{{}, 0.25F});
    const HSTREAM stream = Open(path);
    EXPECT_EQ(BASS_ChannelGetLevelsKnown(stream), 0U);
    MeasureAll(path, {scan.begin(), scan.begin() + 40});
    const QWORD known = BASS_ChannelGetLevelsKnown(stream);
    EXPECT_GT(known, Length(stream) / 16);
    EXPECT_LT(known, Length(stream));
    MeasureAll(path, {scan.begin(), scan.begin() + 10});
    EXPECT_EQ(BASS_ChannelGetLevelsKnown(stream), known);
    const auto before = MeasureAll(path, scan);
    EXPECT_EQ(BASS_ChannelGetLevelsKnown(stream), Length(stream));
    // Nothing but a file of the same size in the same place.
    folder.Write("a", std::string(std::filesystem::file_size(path), '\0'));
    float levels[2];
    EXPECT_TRUE(BASS_ChannelGetLevelEx(stream, levels, 1, BASS_LEVEL_STEREO));
    EXPECT_EQ(levels[0] + levels[1], 0.0F);
    BASS_StreamFree(stream);
    EXPECT_EQ(BASS_ChannelGetLevelsKnown(stream), kNone);
}

TEST_F(PeakIndexes, AndIndexesOfFramesOfAFileThatChangedMeanwhileAreNotKept) {
    const std::string wav = WavBuilder{.samples = WavBuilder::Pattern(2'000'000)}.Bytes();
    for (const bool changes : {false, true}) {
        std::string path = folder.Write("a.mp3", Clip("joint-stereo-44100.mp3"));
        auto before = File::Open(path.c_str());
        auto file = std::make_shared<ChangingFile>(path);
        file->m_isToChange = changes;
        const auto frames = FrameIndexCache::Shared().IndexOf(file);
        EXPECT_EQ(FrameIndexCache::Shared().IndexOf(before) == frames, !changes);

        path = folder.Write("a.wav", wav);
        before = File::Open(path.c_str());
        const PeakMeter other(OpenDecoder(before, 1), before);
        file = std::make_shared<ChangingFile>(path);
        PeakMeter meter(OpenDecoder(file, 1), file);
        file->m_isToChange = changes;
        meter.Measure(0, 400'000);
        EXPECT_EQ(other.Known() > 0, !changes);
    }
}

TEST_F(PeakIndexes, AreFilledByOneAtATimeOfMany) {
    const std::string path = folder.Write("a", Clip("joint-stereo-44100.mp3", 30));
    const std::vector<std::vector<Step>> works{std::vector(2000, Step{{}, 0.02F}),
                                               std::vector(600, Step{{}, 0.071F})};
    BASS_KeepLevels(FALSE);
    const std::vector expected{MeasureAll(path, works[0]), MeasureAll(path, works[1])};
    for (int round = 0; round < 3; ++round) {
        BASS_KeepLevels(FALSE);
        BASS_KeepLevels(TRUE);
        const HSTREAM stalled = Open(path); // has begun, and goes on when all others are done
        const Measured begun = Measure(stalled, works[0][0]);
        std::vector<std::thread> threads;
        threads.reserve(4);
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([&, thread] {
                const auto& work = works[static_cast<std::size_t>(thread % 2)];
                MeasureAll(path, {work.begin(), work.begin() + 100 * thread}); // is stopped
                EXPECT_EQ(MeasureAll(path, work), expected[static_cast<std::size_t>(thread % 2)]);
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        EXPECT_EQ(begun, expected[0][0]);
        EXPECT_EQ(Measure(stalled, works[0][1]), expected[0][1]);
        BASS_StreamFree(stalled);
    }
}

} // namespace
