#include "app/OverviewBar.h"
#include "app/SceneStretch.h"
#include "app/StripNavigator.h"
#include "app/TimeRuler.h"
#include "app/WaveScrollArea.h"
#include "app/WaveView.h"
#include "tests/app/Program.h"

#include <QScrollBar>
#include <QWheelEvent>

namespace {

/// A silent minute, and what a hand does to its strip.
struct HandledStrip : Program {
    HandledStrip() : Program(SilentWav(60)) {}

    unsigned long long At(int column) {
        return static_cast<unsigned long long>(column) * Engine().bytesPerPixel / 2 * 2;
    }
    void Drag(int from, int to) {
        QTest::mousePress(strip, Qt::LeftButton, {}, {from, 100});
        for (const int x : {(from + to) / 2, to}) {
            QMouseEvent move(QEvent::MouseMove, QPointF(x, 100),
                             strip->mapToGlobal(QPointF(x, 100)), Qt::NoButton, Qt::LeftButton, {});
            QCoreApplication::sendEvent(strip, &move);
        }
        QTest::mouseRelease(strip, Qt::LeftButton, {}, {to, 100});
    }
    void Wheel(QWidget* widget, int x, int turned, Qt::KeyboardModifiers modifiers) {
        QWheelEvent wheel({double(x), 100}, widget->mapToGlobal(QPointF(x, 100)), {}, {0, turned},
                          {}, modifiers, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(widget, &wheel);
    }
    /// Columns of the start, the end and the position.
    std::vector<int> Columns() {
        return {strip->GetStartColumn().value_or(-1), strip->GetEndColumn().value_or(-1),
                strip->GetPositionColumn()};
    }

    WaveView* strip = Find<WaveView>("waveView");
    QScrollBar* bar = Find<WaveScrollArea>("waveScrollArea")->horizontalScrollBar();
};

TEST(StripByHand, DragsMarkARangeOrMoveAMark) {
    HandledStrip program;
    const int last = program.strip->width() - 1;
    const std::tuple<int, int, std::vector<int>> drags[] = {
        {100, 103, {-1, -1, 100}},  {100, 300, {100, 300, 100}}, {102, 50, {50, 300, 50}},
        {297, 400, {50, 400, 400}}, {200, 150, {200, 150, 200}}, {148, 5000, {200, last, last}},
        {203, -20, {0, last, 0}},   {500, 502, {0, last, 500}}};
    for (const auto& [from, to, columns] : drags) {
        program.Drag(from, to);
        EXPECT_EQ(program.Columns(), columns) << from << " to " << to;
    }
    EXPECT_LE(program.Engine().GetEndPosition(), program.Engine().length);
    EXPECT_TRUE(program.Enabled().find("CutDel") != std::string::npos);

    program.Engine().sceneChangePositions = {program.At(100), program.At(600)};
    for (const auto& [x, columns] : {std::pair{50, std::vector{0, 100, 50}},
                                     {100, {100, 600, 100}},
                                     {700, {600, last, 700}}}) {
        QTest::mouseClick(program.strip, Qt::LeftButton, {}, {x, 100});
        QTest::mouseDClick(program.strip, Qt::LeftButton, {}, {x, 100});
        EXPECT_EQ(program.Columns(), columns) << x;
    }
}

TEST(StripByHand, WheelWithCtrlZoomsAtThePointerAndWithShiftScrolls) {
    HandledStrip program;
    const int width = program.strip->width();
    program.Wheel(program.strip, 400, 120, Qt::ControlModifier);
    EXPECT_EQ(program.Engine().zoom, 4);
    const auto positionAt = [&](int x) {
        return static_cast<double>(program.bar->value() + x) * program.Engine().bytesPerPixel;
    };
    const double before = positionAt(400);
    EXPECT_NEAR(before, static_cast<double>(program.Engine().length) * 400 / width, 4'000);
    for (const int turned : {360, -240, 120}) {
        program.Wheel(program.strip, program.bar->value() + 400, turned, Qt::ControlModifier);
        EXPECT_NEAR(positionAt(400), before, 8'000) << turned;
    }
    // What has appeared under the pointer meanwhile hands the wheel on.
    auto* const ruler = program.Find<TimeRuler>("timeRuler");
    auto* const overview = program.Find<OverviewBar>("overviewBar");
    EXPECT_TRUE(ruler->isVisible() && overview->isVisible());
    const int zoom = program.Engine().zoom;
    program.Wheel(ruler, 400, 120, Qt::ControlModifier);
    EXPECT_EQ(program.Engine().zoom, zoom + 3);
    EXPECT_NEAR(positionAt(400), before, 8'000);

    const int scrolled = program.bar->value();
    program.Wheel(program.strip, 0, -120, Qt::ShiftModifier);
    EXPECT_GT(program.bar->value(), scrolled);
    EXPECT_EQ(program.Engine().zoom, zoom + 3);
    QTest::mouseClick(overview, Qt::LeftButton, {}, {width * 3 / 4, 5});
    EXPECT_NEAR(positionAt(width / 2), static_cast<double>(program.Engine().length) * 3 / 4,
                12'000);
    program.Trigger("Zoom1Menu");
    EXPECT_FALSE(ruler->isVisible() || overview->isVisible());
}

TEST(StripByHand, KeysStepFinelyAndFarAndJumpToTheMarks) {
    HandledStrip program;
    program.Engine().cutPositions = {160'000, 320'000};
    const std::tuple<int, Qt::KeyboardModifiers, unsigned long long> keys[] = {
        {Qt::Key_I, Qt::ShiftModifier, 160'000},
        {Qt::Key_Period, {}, 160'160},
        {Qt::Key_Comma, {}, 160'000},
        {Qt::Key_Right, Qt::ControlModifier, 161'600},
        {Qt::Key_Left, Qt::ShiftModifier, 1'600},
        {Qt::Key_Left, Qt::ShiftModifier, 0},
        {Qt::Key_Right, Qt::ShiftModifier, 160'000},
        {Qt::Key_O, Qt::ShiftModifier, 320'000},
        {Qt::Key_Left, Qt::ControlModifier, 318'400}};
    for (const auto& [key, modifiers, position] : keys) {
        QTest::keyClick(program.Find("mainView"), static_cast<Qt::Key>(key), modifiers);
        EXPECT_EQ(program.Engine().GetCurrentPosition(), position) << key;
    }
    QTest::keyClick(program.Find("mainView"), Qt::Key_Z);
    EXPECT_EQ(program.Engine().zoom, 5); // a sixth of the file in nine tenths of the width
    const int visible = program.Find("waveScrollArea")->width();
    EXPECT_GT(*program.strip->GetStartColumn(), program.bar->value());
    EXPECT_LT(*program.strip->GetEndColumn(), program.bar->value() + visible);
    EXPECT_EQ(ZoomToFit(100, 100'000, 7) + ZoomToFit(99, 100, 9), 8);
}

TEST(StripByHand, EverythingAroundTheStripHasItsRoomInALowWindow) {
    HandledStrip program;
    program.delegate.GetWindow()->setMinimumSize(0, 0);
    for (const int height : {420, 700, 420}) {
        program.delegate.GetWindow()->resize(800, height);
        program.Trigger("QuietListMenu");
        program.Trigger(height == 420 ? "Zoom5Menu" : "Zoom1Menu");
        QCoreApplication::processEvents();
        int bottom = 0;
        for (const char* const name : {"overviewBar", "timeRuler", "waveScrollArea", "placeTicks",
                                       "historyLabel", "HistoryOutlineView"}) {
            const QWidget* const widget = program.Find(name);
            if (widget->isVisible()) {
                EXPECT_GE(widget->geometry().top(), bottom) << name << ' ' << height;
                bottom = widget->geometry().bottom();
            }
        }
        EXPECT_LT(bottom, program.Find("mainView")->height());
        EXPECT_EQ(program.Find("historyLabel")->isVisible(), height == 700);
    }
}

TEST(StripByHand, FramesOfAnMP3AreItsFineStep) {
    Program program(TemporaryFolder::Read(KLIPRA_CLIPS "/mono-8000.mp3"), "speech.mp3");
    QTest::keyClick(program.Find("mainView"), Qt::Key_Period);
    EXPECT_EQ(program.Engine().GetCurrentPosition(), 576 * 2);
}

} // namespace
