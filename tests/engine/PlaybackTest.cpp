#include "tests/adaptor/RecordingDelegate.h"

#include <gtest/gtest.h>

namespace {

/// Five seconds of 16-bit stereo: 32 bytes a millisecond.
const std::string kSong = Wav(Samples(80'000), 2);

TEST(Playback, StartsStopsAndEndsAlsoAtOnce) {
    OpenedFile file(kSong);
    KlipraMac& engine = file.adaptor;
    engine.SetCurrentPosition(8000);
    for (const bool isPlaying : {true, false}) {
        engine.PlayOrStop();
        EXPECT_EQ(engine.playing, isPlaying);
    }
    EXPECT_GE(engine.SetStartPosition(), 8000);
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(engine.LoadPlayFile());
        engine.SetCurrentPosition(engine.lastPosition);
        engine.PlayStart();
        file.delegate.AwaitStop();
        EXPECT_FALSE(engine.playing);
    }
}

TEST(Positions, StayInsideTheStream) {
    OpenedFile file(kSong);
    KlipraMac& engine = file.adaptor;
    EXPECT_TRUE(engine.SetCurrentPositionInSeconds(5.0));
    EXPECT_EQ(engine.GetCurrentPosition(), 159'996); // the last sample frame begins there
    engine.SetCurrentPosition(9600);
    const std::tuple<double, unsigned, unsigned> moves[] = {
        // by seconds, to the left, then to the right
        {1.0, 0, 32'000},
        {-4.5, 160'000, 16'000},
        {1e300, 0, 160'000}};
    for (const auto& [seconds, left, right] : moves) {
        engine.moveAmount = seconds;
        engine.MovePositionLeft();
        EXPECT_EQ(engine.GetCurrentPosition(), left) << seconds;
        engine.MovePositionRight();
        EXPECT_EQ(engine.GetCurrentPosition(), right) << seconds;
    }
}

TEST(Positions, OfSceneChangesAreVisitedInEitherDirection) {
    OpenedFile file(kSong);
    KlipraMac& engine = file.adaptor;
    engine.sceneChangePositions = {32'002, 64'000, 96'002}; // it stands at whole sample frames
    for (const unsigned long long next : {32'000U, 64'000U, 96'000U}) {
        EXPECT_TRUE(engine.MovePositionNext());
        EXPECT_EQ(engine.GetCurrentPosition(), next);
    }
    EXPECT_FALSE(engine.MovePositionNext());
    for (const unsigned long long back : {64'000U, 32'000U}) {
        EXPECT_TRUE(engine.MovePositionBack());
        EXPECT_EQ(engine.GetCurrentPosition(), back);
    }
    EXPECT_FALSE(engine.MovePositionBack());
}

} // namespace
