#include "tests/adaptor/RecordingDelegate.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using Positions = std::vector<unsigned long long>;

constexpr int kBlock = 160 * 4; // 20 ms at 8000 Hz, in bytes

/// Stereo from a text such as "L50 Q10 l3": blocks that are loud (a level of 0.1), quiet, loud in
/// the left and in the right channel alone (l, r).
Samples Blocks(const std::string& text) {
    Samples samples;
    std::istringstream parts(text);
    int count = 0;
    for (char kind = 0; parts >> kind >> count;) {
        for (int i = 0; i < 160 * count; ++i) {
            samples.push_back(kind == 'L' || kind == 'l' ? 3277 : 29);
            samples.push_back(kind == 'L' || kind == 'r' ? 3277 : 29);
        }
    }
    return samples;
}

TEST(SearchSceanChange, FindsQuietStretches) {
    const std::tuple<std::string, float, Positions> cases[] = {
        {"L50 Q9 L50", 0.2F, {}},
        {"L50 Q10 L50", 0.2F, {55 * kBlock}},
        {"L50 Q1 L50 Q3 L1", 0.02F, {101 * kBlock / 2, 205 * kBlock / 2}},
        {"L50 Q99 L50", 0.2F, {199 * kBlock / 2}},
        {"L50 Q100 L50", 2.0F, {50 * kBlock, 150 * kBlock}},
        {"L50 Q10", 0.2F, {50 * kBlock}},
        {"L50 Q9", 0.2F, {}},
        {"Q120", 0.2F, {0}},
        {"L50 l50 r50", 0.2F, {}},
        {"L5 Q6 L1 Q6 L5", 0.2F, {}}};
    for (const auto& [blocks, thresholdTime, positions] : cases) {
        SCOPED_TRACE(testing::Message() << blocks << " for " << thresholdTime);
        OpenedFile file(Wav(Blocks(blocks), 2));
        KlipraMac& engine = file.adaptor;
        engine.thresholdTime = thresholdTime;
        engine.sceneChangePositions = {7};
        EXPECT_EQ(engine.SearchSceanChange(), positions.size());
        EXPECT_EQ(engine.sceneChangePositions, positions);
        EXPECT_EQ(engine.GetCurrentPosition(), positions.empty() ? 0 : positions.front());
    }
}

TEST(SearchSceanChange, StopsPlaybackAndComparesTheCurrentEntryWithTheLevel) {
    OpenedFile file(Wav(Blocks("Q20 L5 Q10"), 2));
    KlipraMac& engine = file.adaptor;
    engine.cutPositions = {0, 20 * kBlock};
    ASSERT_TRUE(engine.Cut(false));
    engine.PlayStart();
    engine.thresholdLevel = 29.0F / 32768.0F; // a block is loud at the threshold itself
    EXPECT_EQ(engine.SearchSceanChange(), 0);
    EXPECT_FALSE(engine.playing);
    engine.thresholdLevel = 3277.0F / 32768.0F;
    EXPECT_EQ(engine.SearchSceanChange(), 1);
    EXPECT_EQ(engine.sceneChangePositions, Positions{5 * kBlock});
}

} // namespace
