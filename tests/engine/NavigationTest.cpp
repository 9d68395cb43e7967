#include "tests/engine/RecordingKlipra.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

class Navigation : public testing::Test {
protected:
    Navigation() { m_engine.Open(WavBuilder::Pattern(160000), 2); } // 5 seconds

    RecordingKlipra m_engine;
};

TEST_F(Navigation, GoesToTheNextSceneChangeAndBack) {
    struct Case {
        unsigned long long from;
        unsigned long long next; // where it stays is where there is none
        unsigned long long back;
    };
    m_engine.sceneChangePositions = {32000, 64000, 96000};
    for (const Case& c : {Case{0, 32000, 0}, Case{16000, 32000, 16000}, Case{32000, 64000, 32000},
                          Case{64000, 96000, 32000}, Case{95996, 96000, 64000},
                          Case{96000, 96000, 64000}, Case{160000, 160000, 96000}}) {
        SCOPED_TRACE(c.from);
        m_engine.SetCurrentPosition(c.from);
        EXPECT_EQ(m_engine.MovePositionNext(), c.next != c.from);
        EXPECT_EQ(m_engine.GetCurrentPosition(), c.next);
        m_engine.SetCurrentPosition(c.from);
        EXPECT_EQ(m_engine.MovePositionBack(), c.back != c.from);
        EXPECT_EQ(m_engine.GetCurrentPosition(), c.back);
    }
}

TEST_F(Navigation, GoesPastAMiddleInsideASampleFrame) {
    m_engine.sceneChangePositions = {32002, 64002};
    EXPECT_TRUE(m_engine.MovePositionNext());
    EXPECT_EQ(m_engine.GetCurrentPosition(), 32000);
    EXPECT_TRUE(m_engine.MovePositionNext());
    EXPECT_EQ(m_engine.GetCurrentPosition(), 64000);
    EXPECT_FALSE(m_engine.MovePositionNext());
    EXPECT_TRUE(m_engine.MovePositionBack());
    EXPECT_EQ(m_engine.GetCurrentPosition(), 32000);
    EXPECT_FALSE(m_engine.MovePositionBack());
}

TEST_F(Navigation, MovesByTheMoveAmountWithinTheStream) {
    struct Case {
        double amount;
        unsigned long long from;
        unsigned long long left;
        unsigned long long right;
    };
    for (const Case& c : {Case{1.0, 64000, 32000, 96000}, Case{1.0, 9600, 0, 41600},
                          Case{1.0, 150000, 118000, 160000}, Case{0.0, 64000, 64000, 64000},
                          Case{0.00001, 64000, 64000, 64000}, Case{-1.0, 64000, 96000, 32000},
                          Case{1e300, 64000, 0, 160000}, Case{-INFINITY, 64000, 160000, 0}}) {
        SCOPED_TRACE(std::to_string(c.amount) + " from " + std::to_string(c.from));
        m_engine.moveAmount = c.amount;
        m_engine.SetCurrentPosition(c.from);
        m_engine.MovePositionLeft();
        EXPECT_EQ(m_engine.GetCurrentPosition(), c.left);
        m_engine.SetCurrentPosition(c.from);
        m_engine.MovePositionRight();
        EXPECT_EQ(m_engine.GetCurrentPosition(), c.right);
    }
}

TEST_F(Navigation, MovesToAPixelOfTheWaveImage) {
    m_engine.bytesPerPixel = 160;
    m_engine.waveSize = {1000, 201};
    m_engine.MovePositionRelative(10, 3);
    EXPECT_EQ(m_engine.GetCurrentPosition(), 160 * (10 + 3 * 1000 / 200));
    m_engine.MovePositionRelative(0, -1); // before the beginning: refused
    EXPECT_EQ(m_engine.GetCurrentPosition(), 4000);
}

} // namespace
