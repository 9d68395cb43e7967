#include "tests/engine/RecordingKlipra.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

namespace {

TEST(LoadPlayFile, OfAFileWithoutAudioLeavesNoStream) {
    RecordingKlipra engine;
    engine.Open(WavBuilder::Pattern(16000));
    engine.Klipra::PushHistory("#-1", engine.folder.Write("1.wav", "nothing"), false, 1);
    EXPECT_FALSE(engine.LoadPlayFile());
    EXPECT_EQ(engine.TakeCalls(), "ErrorMsg:1");
    EXPECT_EQ(engine.channel, 0);
    EXPECT_EQ(engine.currentHistoryId, 2);

    engine.PlayOrStop();
    EXPECT_FALSE(engine.SetCurrentPosition(0));
    EXPECT_EQ(engine.SearchSceanChange(), 0);
    engine.cutPositions = {0, 100};
    EXPECT_FALSE(engine.Cut(true));
    EXPECT_EQ(engine.TakeCalls(), "GetName Target:1-1 CutExec ErrorMsg:2");
}

TEST(LoadPlayFile, MeasuresTheStream) {
    RecordingKlipra engine;
    engine.Open(WavBuilder::Pattern(32000), 2); // a second
    EXPECT_EQ(engine.length, 32000);
    EXPECT_EQ(engine.lastPosition, 31999);
    EXPECT_EQ(engine.bytesPerMilliSecond, 32.0F);
    EXPECT_EQ(engine.PositionToMilliSeconds(31999), 999);

    engine.Open(""); // lasts no time
    ASSERT_NE(engine.channel, 0);
    EXPECT_EQ(engine.length, 0);
    EXPECT_EQ(engine.bytesPerMilliSecond, 100.0F);
}

TEST(Playback, StartsStopsAndGoesOnWhereItStopped) {
    RecordingKlipra engine;
    engine.Open(WavBuilder::Pattern(160000));
    engine.SetCurrentPosition(8000);
    engine.PlayOrStop();
    EXPECT_EQ(engine.TakeCalls(), "Playing EnableTimer");
    engine.PlayOrStop();
    EXPECT_EQ(engine.TakeCalls(), "Stopped");
    EXPECT_FALSE(engine.playing);
    const unsigned long long position = engine.GetCurrentPosition();
    EXPECT_GE(position, 8000);
    EXPECT_EQ(engine.SetStartPosition(), position);
    EXPECT_EQ(engine.GetStartPosition(), position);

    engine.PlayOrStop();
    engine.LoadPlayFile();
    EXPECT_TRUE(engine.playing); // until it is stopped
    engine.TakeCalls();
    engine.PlayOrStop();
    EXPECT_EQ(engine.TakeCalls(), "Stopped");
}

TEST(Playback, TellsItsEndOncePerStart) {
    RecordingKlipra engine;
    engine.Open(WavBuilder::Pattern(160000)); // 10 s: no start takes so long
    engine.PlayStart();
    engine.SetCurrentPosition(engine.length);
    ASSERT_TRUE(engine.AwaitEnds(1));
    EXPECT_EQ(engine.TakeCalls(), "Playing EnableTimer Stopped");
    EXPECT_FALSE(engine.playing);
    engine.PlayOrStop();
    engine.SetCurrentPosition(engine.length);
    ASSERT_TRUE(engine.AwaitEnds(3));
    EXPECT_EQ(engine.TakeCalls(), "Playing EnableTimer Stopped Stopped");
}

TEST(SetCurrentPositionInSeconds, BeyondTheEndMeansTheLastPosition) {
    RecordingKlipra engine;
    engine.Open(WavBuilder::Pattern(32000), 2);
    for (const auto& [seconds, position] : std::vector<std::pair<double, unsigned long long>>{
             {0.5, 16000}, {1.0, 31996}, {1e30, 31996}}) { // the last sample frame begins there
        EXPECT_TRUE(engine.SetCurrentPositionInSeconds(seconds));
        EXPECT_EQ(engine.GetCurrentPosition(), position);
    }
}

TEST(ZoomDelta, StaysWithinTheLimits) {
    RecordingKlipra engine;
    engine.maxZoom = 20;
    for (const auto& [delta, calls] : std::vector<std::pair<int, std::string>>{
             {0, ""}, {-1, ""}, {2, "Zoom:3"}, {INT_MAX, "Zoom:20"}, {1, ""}, {-50, "Zoom:1"}}) {
        engine.ZoomDelta(delta);
        EXPECT_EQ(engine.TakeCalls(), calls) << delta;
    }
    engine.maxZoom = 0; // a very short file
    engine.ZoomDelta(7);
    EXPECT_EQ(engine.TakeCalls(), "");
}

} // namespace
