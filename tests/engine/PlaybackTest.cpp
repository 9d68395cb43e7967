#include "tests/engine/RecordingKlipra.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cmath>
#include <vector>

namespace {

class Playback : public testing::Test {
protected:
    Playback() { m_engine.Open(WavBuilder::Pattern(160000), 2); } // 5 s: no start takes so long

    RecordingKlipra m_engine;
};

TEST_F(Playback, HasNoStreamForAFileWithoutAudio) {
    m_engine.Klipra::PushHistory("#-1", m_engine.folder.Write("1.wav", "nothing"), false, 1);
    EXPECT_FALSE(m_engine.LoadPlayFile());
    m_engine.PlayOrStop();
    EXPECT_EQ(m_engine.SearchSceanChange(), 0);
    m_engine.cutPositions = {0, 100};
    EXPECT_FALSE(m_engine.Cut(true));
    EXPECT_EQ(m_engine.TakeCalls(), "ErrorMsg:1 GetName Target:1-1 CutExec ErrorMsg:2");
}

TEST_F(Playback, MeasuresTheStream) {
    EXPECT_EQ(m_engine.bytesPerMilliSecond, 32.0F);
    EXPECT_EQ(m_engine.PositionToMilliSeconds(31999), 999);
    for (const double seconds : {5.0, 1e30}) {
        EXPECT_TRUE(m_engine.SetCurrentPositionInSeconds(seconds));
        EXPECT_EQ(m_engine.GetCurrentPosition(), 159996); // the last sample frame begins there
    }
    m_engine.Open(""); // lasts no time
    EXPECT_EQ(m_engine.length, 0);
    EXPECT_EQ(m_engine.bytesPerMilliSecond, 100.0F);
}

TEST_F(Playback, StartsStopsAndTellsItsEndOncePerStart) {
    m_engine.SetCurrentPosition(8000);
    m_engine.PlayOrStop();
    m_engine.PlayOrStop();
    EXPECT_GE(m_engine.SetStartPosition(), 8000);
    m_engine.PlayOrStop();
    m_engine.LoadPlayFile(); // playing goes on until it is stopped
    m_engine.PlayOrStop();
    EXPECT_EQ(m_engine.TakeCalls(), "Playing EnableTimer Stopped Playing EnableTimer "
                                    "Zoom:1 EnableZoomMenu Stopped");
    for (const char* calls :
         {"Playing EnableTimer Stopped", "Playing EnableTimer Stopped Stopped"}) {
        m_engine.PlayOrStop();
        m_engine.SetCurrentPosition(m_engine.length);
        EXPECT_EQ(m_engine.TakeCalls(calls), calls);
    }
}

TEST_F(Playback, ZoomStaysWithinTheLimits) {
    m_engine.maxZoom = 20;
    for (const int delta : {0, -1, 2, INT_MAX, 1, -50}) {
        m_engine.ZoomDelta(delta);
    }
    m_engine.maxZoom = 0; // a very short file
    m_engine.ZoomDelta(7);
    EXPECT_EQ(m_engine.TakeCalls(), "Zoom:3 Zoom:20 Zoom:1");
}

TEST_F(Playback, MovesToTheNextSceneChangeAndBack) {
    m_engine.sceneChangePositions = {32002, 64000, 96002}; // it stands at whole sample frames
    for (const unsigned long long next : {32000, 64000, 96000}) {
        EXPECT_TRUE(m_engine.MovePositionNext());
        EXPECT_EQ(m_engine.GetCurrentPosition(), next);
    }
    EXPECT_FALSE(m_engine.MovePositionNext());
    for (const unsigned long long back : {64000, 32000}) {
        EXPECT_TRUE(m_engine.MovePositionBack());
        EXPECT_EQ(m_engine.GetCurrentPosition(), back);
    }
    EXPECT_FALSE(m_engine.MovePositionBack());
}

TEST_F(Playback, MovesByTheMoveAmountWithinTheStream) {
    m_engine.SetCurrentPosition(9600);
    for (const auto& [amount, left, right] :
         std::vector<std::array<double, 3>>{{1.0, 0, 32000},
                                            {-4.5, 160000, 16000},
                                            {1e300, 0, 160000},
                                            {2.5, 80000, 160000},
                                            {-INFINITY, 160000, 0},
                                            {-4.5, 144000, 0}}) {
        SCOPED_TRACE(amount);
        m_engine.moveAmount = amount;
        m_engine.MovePositionLeft();
        EXPECT_EQ(m_engine.GetCurrentPosition(), left);
        m_engine.MovePositionRight();
        EXPECT_EQ(m_engine.GetCurrentPosition(), right);
    }
}

TEST_F(Playback, MovesToAPixelOfTheWaveImage) {
    m_engine.bytesPerPixel = 160;
    m_engine.waveSize = {1000, 201};
    m_engine.MovePositionRelative(10, 3);
    m_engine.MovePositionRelative(0, -1); // before the beginning: refused
    EXPECT_EQ(m_engine.GetCurrentPosition(), 160 * (10 + 3 * 1000 / 200));
}

} // namespace
