#include "comparing/MatchFrames.h"
#include "comparing/MatchSamples.h"
#include "comparing/SampleReader.h"
#include "platform/RegularFile.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>

namespace {

using Runs = std::vector<Comparison::Run>;
using Random = std::mt19937_64;

long long Below(Random& random, std::size_t end) {
    return static_cast<long long>(random() % end);
}

/// Two stretches of a sequence that are long enough to be known by, one behind the other.
template <typename Sequence>
std::pair<Runs, Sequence> CutOf(const Sequence& source, Random& random) {
    constexpr long long kLeast = 64;
    const auto quarter = std::ssize(source) / 4;
    const long long first = Below(random, source.size() / 4);
    const long long firstCount = kLeast + Below(random, source.size() / 4 - kLeast);
    const long long second = 2 * quarter + Below(random, source.size() / 4);
    const long long secondCount = kLeast + Below(random, source.size() / 4 - kLeast);
    Sequence result(source.begin() + first, source.begin() + first + firstCount);
    result.insert(result.end(), source.begin() + second, source.begin() + second + secondCount);
    return {{{0, first, firstCount}, {firstCount, second, secondCount}}, result};
}

/// Whether every frame of a result is told of once, and every run is there in the source.
template <typename Sequence>
void ExpectTrue(const Comparison& comparison, const Sequence& source, const Sequence& result) {
    std::vector<int> told(result.size());
    for (const Comparison::Run& run : comparison.runs) {
        for (long long i = 0; i < run.count; ++i) {
            ++told.at(static_cast<std::size_t>(run.result + i));
            EXPECT_TRUE(source.at(static_cast<std::size_t>(run.source + i)) ==
                        result.at(static_cast<std::size_t>(run.result + i)));
        }
    }
    for (const auto* const stretches : {&comparison.altered, &comparison.foreign}) {
        for (const FrameRun& stretch : *stretches) {
            for (long long i = stretch.begin; i < stretch.end; ++i) {
                ++told.at(static_cast<std::size_t>(i));
            }
        }
    }
    EXPECT_EQ(std::ranges::count(told, 1), std::ssize(told));
    EXPECT_EQ(comparison.CountFrames(), std::ssize(result));
}

struct Print : FramePrint {
    friend bool operator==(const Print& a, const Print& b) { return a.bytes == b.bytes; }
};

std::vector<FramePrint> Prints(const std::vector<Print>& prints) {
    return {prints.begin(), prints.end()};
}

/// Frames that are all different but for stretches of silence.
std::vector<Print> Recording(Random& random) {
    std::vector<Print> prints(2000);
    for (std::size_t i = 0; i < prints.size(); ++i) {
        const bool isSilence = i / 100 % 3 == 0;
        const std::uint64_t hash = isSilence ? 1 : random();
        prints[i] = {{.bytes = hash, .sound = hash / 2, .isMute = isSilence}};
    }
    return prints;
}

TEST(MatchFrames, FindsWhatWasCutThoughFramesOfSilenceAreAllTheSame) {
    for (unsigned int seed = 0; seed < 200; ++seed) {
        Random random(seed);
        const std::vector<Print> source = Recording(random);
        const auto [runs, result] = CutOf(source, random);
        const Comparison comparison = MatchFrames(Prints(source), Prints(result));
        ExpectTrue(comparison, source, result);
        EXPECT_TRUE(comparison.altered.empty() && comparison.foreign.empty()) << seed;
        // Silence at the join may be that before or that behind it.
        EXPECT_EQ(comparison.runs.size(), 2U) << seed;
    }
}

TEST(MatchFrames, TellsAlteredFramesFromForeignOnes) {
    Random random(1);
    const std::vector<Print> source = Recording(random);
    std::vector<Print> result(source.begin() + 110, source.begin() + 190);
    const auto change = [&](std::size_t frame, bool sound, bool isMute) {
        result[frame].bytes = random();
        result[frame].sound = sound ? random() : result[frame].sound;
        result[frame].isMute = isMute;
    };
    change(20, false, false);
    change(21, true, true); // muted by a join
    change(40, true, false);
    const auto compare = [&] { return MatchFrames(Prints(source), Prints(result)); };
    EXPECT_EQ(compare().runs, (Runs{{0, 110, 20}, {22, 132, 18}, {41, 151, 39}}));
    EXPECT_EQ(compare().altered, (std::vector<FrameRun>{{20, 22}}));
    EXPECT_EQ(compare().foreign, (std::vector<FrameRun>{{40, 41}}));
    for (std::size_t i = 50; i < 70; ++i) { // no join mutes so many
        change(i, true, true);
    }
    EXPECT_EQ(compare().foreign, (std::vector<FrameRun>{{40, 41}, {56, 64}}));
    EXPECT_TRUE(MatchFrames({}, Prints(result)).runs.empty());
    EXPECT_EQ(MatchFrames(Prints(source), {}).CountFrames(), 0);
}

/// A WAV of these samples, mono and of 16 bits.
struct WavFile {
    explicit WavFile(const std::vector<std::int16_t>& samples) {
        WavBuilder wav{.channels = 1};
        wav.samples.assign(reinterpret_cast<const char*>(samples.data()), samples.size() * 2);
        file = OpenRegularFile(folder.Write("a.wav", wav.Bytes()).c_str());
        EXPECT_EQ(ReadWholeWAVLayout(file.get(), layout), CutReason::None);
    }

    TemporaryFolder folder;
    FilePointer file;
    WholeWAVLayout layout;
};

Comparison Match(const std::vector<std::int16_t>& source, const std::vector<std::int16_t>& result) {
    const WavFile a(source);
    const WavFile b(result);
    SampleReader reader(a.file.get(), a.layout);
    SampleReader resultReader(b.file.get(), b.layout);
    return MatchSamples(reader, resultReader);
}

std::vector<std::int16_t> Noise(Random& random, std::size_t count) {
    std::vector<std::int16_t> samples(count);
    std::ranges::generate(samples, [&] { return static_cast<std::int16_t>(random()); });
    return samples;
}

TEST(MatchSamples, FindsWhatWasCutAtAnySampleOfNoiseSilenceAndTone) {
    for (unsigned int seed = 0; seed < 60; ++seed) {
        Random random(seed);
        std::vector<std::int16_t> source = Noise(random, 40'000 + 997 * seed);
        for (std::size_t i = 0; i < source.size() && seed % 3 != 0; ++i) {
            const bool isSteady = seed % 3 == 2 || i / 3000 % 2 == 0;
            source[i] = isSteady ? static_cast<std::int16_t>(seed % 2 * (i % 100)) : source[i];
        }
        auto [runs, result] = CutOf(source, random);
        Comparison comparison = Match(source, result);
        ExpectTrue(comparison, source, result);
        EXPECT_TRUE(comparison.foreign.empty()) << seed;
        EXPECT_LE(comparison.runs.size(), 2U) << seed;
        if (seed % 3 == 0) {
            EXPECT_EQ(comparison.runs.front().source, runs.front().source) << seed;
            EXPECT_EQ(comparison.runs.back().source + comparison.runs.back().count,
                      runs.back().source + runs.back().count)
                << seed;
        }
    }
}

TEST(MatchSamples, FindsStretchesThatAreShorterThanABlockAndSeesOneSampleThatDiffers) {
    Random random(7);
    std::vector<std::int16_t> source = Noise(random, 100'000);
    std::memcpy(reinterpret_cast<char*>(source.data()) + 21, &source[16'383], 6);
    const auto part = [&](long long begin, long long count) {
        return std::vector(source.begin() + begin, source.begin() + begin + count);
    };
    EXPECT_EQ(Match(source, part(16'383, 3)).runs, (Runs{{0, 16'383, 3}}));
    std::vector<std::int16_t> result = source;
    ++result[50'000];
    const Comparison comparison = Match(source, result);
    EXPECT_EQ(comparison.runs, (Runs{{0, 0, 50'000}, {50'001, 50'001, 49'999}}));
    EXPECT_EQ(comparison.foreign, (std::vector<FrameRun>{{50'000, 50'001}}));
    EXPECT_EQ(Match(source, Noise(random, 5000)).foreign, (std::vector<FrameRun>{{0, 5000}}));
}

} // namespace
