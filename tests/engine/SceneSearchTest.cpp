#include "tests/engine/RecordingKlipra.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

// Sample frames at 8000 Hz: a 20 ms block is 160 of them.
constexpr int kBlock = 160;

std::string Sample(double value) {
    return WavBuilder::Number(2, static_cast<std::uint32_t>(std::lround(value * 32768.0)));
}

// Stereo from a text such as "L50 Q10 l3": blocks that are loud, quiet, loud in the left and in
// the right channel alone (l, r).
std::string Blocks(const std::string& text) {
    std::string samples;
    for (std::size_t i = 0; i < text.size();) {
        const char kind = text[i];
        std::size_t digits = 0;
        const int frames = std::stoi(text.substr(i + 1), &digits) * kBlock;
        i += digits + 2;
        for (int n = 0; n < frames; ++n) {
            const double quiet = 0.0009;
            const double value = (n % 20 < 10 ? 1 : -1) * (kind == 'Q' ? quiet : 0.1);
            samples += Sample(kind == 'r' ? quiet : value) + Sample(kind == 'l' ? quiet : value);
        }
    }
    return samples;
}

struct Case {
    std::string blocks;
    float thresholdTime;
    std::vector<double> positions; // in blocks
};

TEST(SearchSceanChange, FindsQuietStretches) {
    const std::vector<Case> cases = {
        {"L50 Q25 L50", 0.2F, {62.5}},
        {"L50 Q9 L50", 0.2F, {}},
        {"L50 Q10 L50", 0.2F, {55}},
        {"L50 Q9 L50", 0.02F, {54.5}},
        {"L50 Q1 L50 Q3 L1", 0.02F, {50.5, 102.5}},
        {"L50 Q99 L50", 0.2F, {99.5}},
        {"L50 Q100 L50", 0.2F, {50, 150}},
        {"L50 Q100 L50", 2.0F, {50, 150}},
        {"Q50 L50", 0.2F, {25}},
        {"L50 Q150", 0.2F, {50}},
        {"L50 Q10", 0.2F, {50}},
        {"L50 Q9", 0.2F, {}},
        {"Q120", 0.2F, {0}},
        {"L50 l50 r50", 0.2F, {}},
        {"L5 Q6 L1 Q6 L5", 0.2F, {}}, // what is too short is not added to the next one
        {"L5 Q12 L1 Q12 L5", 0.2F, {11, 24}},
        {"L5 Q12 L5", 0.0F, {11}},
        {"L5 Q12 L5", -INFINITY, {11}},
        {"L5 Q12 L5", INFINITY, {}},
        {"L5 Q12 L5", NAN, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.blocks + " for " + std::to_string(c.thresholdTime));
        RecordingKlipra engine;
        engine.Open(Blocks(c.blocks), 2);
        engine.thresholdTime = c.thresholdTime;
        engine.sceneChangePositions = {7};
        std::vector<unsigned long long> expected;
        for (const double position : c.positions) {
            expected.push_back(static_cast<unsigned long long>(position * kBlock * 4));
        }
        EXPECT_EQ(engine.SearchSceanChange(), expected.size());
        EXPECT_EQ(engine.sceneChangePositions, expected);
        EXPECT_EQ(engine.GetCurrentPosition(), expected.empty() ? 0 : expected.front());
        EXPECT_EQ(engine.GetSearchPosition(), engine.length - kBlock * 4);
    }
}

TEST(SearchSceanChange, StopsPlaybackAndComparesWithTheLevel) {
    RecordingKlipra engine;
    engine.Open(Blocks("L5 Q12 L5"), 2);
    engine.PlayStart();
    engine.TakeCalls();
    engine.thresholdLevel = 0.0008F;
    EXPECT_EQ(engine.SearchSceanChange(), 0);
    EXPECT_EQ(engine.TakeCalls(), "Stopped");

    // A block is loud at the threshold itself: the level of 0.1 is 3277 / 32768.
    engine.thresholdLevel = 3277.0F / 32768.0F;
    EXPECT_EQ(engine.SearchSceanChange(), 1);
    EXPECT_EQ(engine.sceneChangePositions.front(), 11 * kBlock * 4);

    // A block that the end cuts short does not count.
    const std::string samples = Blocks("L50 Q10");
    engine.Open(samples.substr(0, samples.size() - 4), 2);
    engine.thresholdLevel = 0.001F;
    EXPECT_EQ(engine.SearchSceanChange(), 0);
}

// Layer II frames do not depend on each other, and one of zeros after its header is silent.
TEST(SearchSceanChange, FindsAPauseInAnMp3) {
    constexpr std::size_t kFrameBytes = 288; // 96 kbit/s at 48 kHz: 24 ms
    const std::string clip =
        TemporaryFolder::Read(KLIPRA_CLIPS "/layer2-48000.mp3").substr(0, 40 * kFrameBytes);
    std::string pause;
    for (int i = 0; i < 40; ++i) {
        pause += clip.substr(0, 4) + std::string(kFrameBytes - 4, '\0');
    }
    RecordingKlipra engine;
    engine.formatType = FormatType::MP3;
    engine.Open("pause.mp3", clip + pause + clip);
    ASSERT_EQ(engine.length, 120 * 1152 * 4);
    ASSERT_EQ(engine.SearchSceanChange(), 1);
    // The frames begin on block 48 and end before block 96; the decoder's filter lets the sound
    // before them ring for less than 512 sample frames, which is within the first of those blocks.
    EXPECT_EQ(engine.sceneChangePositions.front(), (49 + 96) * 960 / 2 * 4);
}

} // namespace
