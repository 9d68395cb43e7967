#include "app/OverviewBars.h"
#include "app/QuietScale.h"
#include "app/StripGesture.h"
#include "app/TimeRuler.h"

#include <gtest/gtest.h>

#include <random>
#include <tuple>

namespace {

using Drag = StripGesture::Drag;

TEST(StripGesture, DragTakesTheMarkThatIsCaughtAndBeginsWithTheFourthPixel) {
    const std::tuple<int, std::optional<int>, std::optional<int>, Drag> cases[] = {
        {100, {}, {}, Drag::Range},  {100, 97, {}, Drag::Start}, {100, 96, {}, Drag::Range},
        {100, {}, 103, Drag::End},   {100, 98, 101, Drag::End},  {100, 99, 102, Drag::Start},
        {99, 100, 100, Drag::Start}, {101, 100, 100, Drag::End}, {100, 100, 100, Drag::End},
        {100, 103, 97, Drag::Start}};
    for (const auto& [column, start, end, drag] : cases) {
        SCOPED_TRACE(testing::Message()
                     << column << ' ' << start.value_or(-1) << ' ' << end.value_or(-1));
        StripGesture gesture;
        EXPECT_EQ(gesture.Move(column + 10), Drag::None) << "nothing is pressed";
        gesture.Press(column, start, end);
        EXPECT_EQ(gesture.Move(column + 3), Drag::None);
        EXPECT_EQ(gesture.Move(column - 4), drag);
        EXPECT_EQ(gesture.Move(column), drag) << "a drag stays one on its way back";
        gesture.Release();
        EXPECT_EQ(gesture.Move(column + 10), Drag::None);
    }
}

TEST(TimeRuler, LabelsAreApartAndAsFineAsTheirDistance) {
    EXPECT_EQ(ChooseRulerScale(0.0001, 90).stepSeconds, 0.01);
    EXPECT_EQ(ChooseRulerScale(0.1, 90).stepSeconds, 10);
    EXPECT_EQ(ChooseRulerScale(36.0, 90).stepSeconds, 3600);
    EXPECT_EQ(RulerLabel(59.9996, 0.001), "1:00.000");
    EXPECT_EQ(RulerLabel(3599.5, 0.5), "59:59.5");
    EXPECT_EQ(RulerLabel(36'000, 600), "10:00:00");
    EXPECT_EQ(RulerLabel(61, 1), "1:01");
}

TEST(OverviewBars, AreTheLongestOfTheirColumnsAsSoonAsThoseAreFinished) {
    constexpr SIZE kSize{701, 201};
    std::vector<std::uint32_t> pixels(701 * 201);
    WaveContext wave(pixels.data(), kSize);
    std::mt19937 random(1);
    std::vector<OverviewBars::Bar> columns;
    OverviewBars bars;
    bars.Restart(100);
    EXPECT_FALSE(bars.Update(wave));
    for (int column = 0; column < kSize.width; ++column) {
        const int up = static_cast<int>(random() % 101);
        const int down = static_cast<int>(random() % 101);
        columns.push_back({up, down});
        wave.PaintColumn(static_cast<float>(up) / 100.0F, static_cast<float>(down) / 100.0F,
                         MakeLevelColors(kSize.height));
        bars.Update(wave);
    }
    ASSERT_EQ(bars.Get().size(), 100U);
    for (std::size_t i = 0; i < 100; ++i) {
        OverviewBars::Bar longest;
        for (std::size_t column = i * 701 / 100; column < (i + 1) * 701 / 100; ++column) {
            longest.up = std::max(longest.up, columns[column].up);
            longest.down = std::max(longest.down, columns[column].down);
        }
        EXPECT_EQ(bars.Get()[i].up, longest.up) << i;
        EXPECT_EQ(bars.Get()[i].down, longest.down) << i;
    }
}

TEST(QuietScale, StepsAndValuesAgree) {
    for (int step = QuietLevelScale::kLeast; step <= QuietLevelScale::kMost; ++step) {
        EXPECT_EQ(QuietLevelScale::StepOf(QuietLevelScale::LevelOf(step)), step);
    }
    EXPECT_EQ(QuietLevelScale::TextOf(QuietLevelScale::StepOf(0.001F)), "-60.0 dB (0.100 %)");
    EXPECT_EQ(QuietLevelScale::StepOf(0.0F), QuietLevelScale::kLeast);
    EXPECT_EQ(QuietLevelScale::StepOf(2.0F), QuietLevelScale::kMost);
    EXPECT_EQ(QuietLengthScale::StepOf(0.2F), 10);
    EXPECT_EQ(QuietLengthScale::StepOf(100.0F), QuietLengthScale::kMost);
}

} // namespace
