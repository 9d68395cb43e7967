#include "tests/engine/RecordingKlipra.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <vector>

namespace {

using Positions = std::vector<unsigned long long>;

constexpr int kBlock = 160 * 4; // 20 ms at 8000 Hz, in bytes

// Stereo from a text such as "L50 Q10 l3": blocks that are loud, quiet, loud in the left and in
// the right channel alone (l, r).
std::string Blocks(const std::string& text) {
    const std::string quiet = WavBuilder::Number(2, 29);
    const std::string loud = WavBuilder::Number(2, 3277); // a level of 0.1
    std::string samples;
    std::istringstream parts(text);
    int count = 0;
    for (char kind = 0; parts >> kind >> count;) {
        for (int n = 0; n < count * kBlock; n += 4) {
            samples += kind == 'L' || kind == 'l' ? loud : quiet;
            samples += kind == 'L' || kind == 'r' ? loud : quiet;
        }
    }
    return samples;
}

TEST(SearchSceanChange, FindsQuietStretches) {
    for (const auto& [blocks, thresholdTime, positions] :
         std::vector<std::tuple<std::string, float, Positions>>{
             {"L50 Q9 L50", 0.2F, {}},
             {"L50 Q10 L50", 0.2F, {55 * kBlock}},
             {"L50 Q1 L50 Q3 L1", 0.02F, {101 * kBlock / 2, 205 * kBlock / 2}},
             {"L50 Q99 L50", 0.2F, {199 * kBlock / 2}},
             {"Q50 L50", 0.2F, {25 * kBlock}},
             {"L50 Q100 L50", 2.0F, {50 * kBlock, 150 * kBlock}},
             {"L50 Q10", 0.2F, {50 * kBlock}},
             {"L50 Q9", 0.2F, {}},
             {"Q120", 0.2F, {0}},
             {"L50 l50 r50", 0.2F, {}},
             {"L5 Q6 L1 Q6 L5", 0.2F, {}},
             {"L5 Q12 L5", -INFINITY, {11 * kBlock}},
             {"L5 Q12 L5", INFINITY, {}},
             {"L5 Q12 L5", NAN, {}}}) {
        SCOPED_TRACE(testing::Message() << blocks << " for " << thresholdTime);
        RecordingKlipra engine;
        engine.Open(Blocks(blocks), 2);
        engine.thresholdTime = thresholdTime;
        engine.sceneChangePositions = {7};
        EXPECT_EQ(engine.SearchSceanChange(), positions.size());
        EXPECT_EQ(engine.sceneChangePositions, positions);
        EXPECT_EQ(engine.GetCurrentPosition(), positions.empty() ? 0 : positions.front());
        EXPECT_EQ(engine.GetSearchPosition(), engine.length - kBlock);
    }
}

TEST(SearchSceanChange, StopsPlaybackAndComparesWithTheLevel) {
    RecordingKlipra engine;
    const std::string samples = Blocks("L5 Q10");
    engine.Open(samples, 2);
    engine.PlayStart();
    engine.TakeCalls();
    engine.thresholdLevel = 0.0008F;
    EXPECT_EQ(engine.SearchSceanChange(), 0);
    EXPECT_EQ(engine.TakeCalls(), "Stopped");
    engine.thresholdLevel = 3277.0F / 32768.0F; // a block is loud at the threshold itself
    EXPECT_EQ(engine.SearchSceanChange(), 1);
    EXPECT_EQ(engine.sceneChangePositions, Positions{5 * kBlock});
    engine.Open(samples.substr(4), 2); // a block that the end cuts short does not count
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
    engine.Open("pause.mp3", clip + pause + clip);
    EXPECT_EQ(engine.SearchSceanChange(), 1);
    // The frames begin on block 48 and end before block 96; the decoder's filter lets the sound
    // before them ring for less than 512 sample frames, which is within the first of those blocks.
    EXPECT_EQ(engine.sceneChangePositions, Positions{(49 + 96) * 960 / 2 * 4});
}

} // namespace
