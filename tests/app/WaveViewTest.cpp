#include "app/WaveView.h"

#include "app/Markers.h"
#include "app/WaveScrollArea.h"
#include "tests/app/Program.h"

#include <QPainter>
#include <QScrollBar>

#include <numeric>

namespace {

QImage Paint(QWidget* widget, const QRect& part) {
    return widget->grab(part).toImage().convertToFormat(QImage::Format_RGB32);
}

TEST(WaveView, ColumnsMarkPositions) {
    using Pixels = std::vector<std::pair<int, QRgb>>;
    Program program(SilentWav(4));
    QWidget* const strip = program.Find("waveView");
    const int width = strip->width();
    const auto at = [&](int column) {
        return static_cast<unsigned long long>(column) * program.Engine().bytesPerPixel;
    };
    const QRgb white = 0xFFFFFFFF, cyan = 0xFF00FFFF, yellow = 0xFFFFFF00;
    const std::tuple<CutPositions, unsigned long long, Pixels> cases[] = {
        {{at(30), kUnsetPosition}, at(11) - 1, {{10, white}, {30, cyan}}},
        {{at(9), at(9)}, at(20), {{9, yellow}, {20, white}}},
        {{at(9), at(8)}, at(9), {{8, yellow}, {9, white}}},
        {{0, at(width)}, at(1), {{0, cyan}, {1, white}, {width - 1, yellow}}}};
    for (const auto& [marked, current, pixels] : cases) {
        program.Engine().cutPositions = marked;
        program.Engine().SetCurrentPosition(current);
        QImage expected(width, 1, QImage::Format_RGB32);
        expected.fill(Qt::black);
        if (marked.start != kUnsetPosition && marked.end != kUnsetPosition) {
            const auto [first, last] = std::minmax(marked.start, marked.end);
            const int left = static_cast<int>(first / program.Engine().bytesPerPixel);
            const int right = static_cast<int>(last / program.Engine().bytesPerPixel);
            const QColor tint = Paint(strip, {(left + right) / 2, 200, 1, 1}).pixelColor(0, 0);
            QPainter(&expected).fillRect(left, 0, right - left, 1, tint);
            EXPECT_EQ(right - left > 2, tint != QColor(Qt::black) && tint.blue() > tint.red());
        }
        for (const auto& [x, color] : pixels) {
            expected.setPixel(x, 0, color);
        }
        EXPECT_EQ(Paint(strip, {0, 200, width, 1}), expected);
    }
    for (const int x : {0, 499, width - 1}) {
        QTest::mouseClick(strip, Qt::LeftButton, {}, QPoint(x, 200));
        EXPECT_EQ(program.Engine().GetCurrentPosition(), at(x));
    }
    EXPECT_EQ(ClockLabel(3'599'999) + " " + ClockLabel(3'600'001) + " " + ClockLabel(36'754'000),
              "59:59.999 1:00:00.001 10:12:34.000");
    EXPECT_EQ(TimeLabel(61'234) + " " + TimeLabel(3'723'004), "1:01.234 62:03.004");
}

TEST(WaveView, KeepsThePositionInViewWhereAColumnIsAsShortAsItCanBe) {
    // The zoom is limited for the width at launch: a wider window has more columns than there are
    // milliseconds, and the strip's right part stays empty.
    Program program(SilentWav(7));
    program.delegate.GetWindow()->resize(1600, 600);
    Await([&] { return program.Engine().GetImageSize().width == 1600; });
    auto* const area = program.Find<WaveScrollArea>("waveScrollArea");
    auto* const strip = program.Find<WaveView>("waveView");
    for (const int zoom : {7, 5, 6}) {
        program.Engine().SetCurrentPosition(program.Engine().length * 3 / 4);
        program.Engine().Zoom(zoom);
        area->Follow();
        const int seenAt = strip->GetPositionColumn() - area->horizontalScrollBar()->value();
        EXPECT_TRUE(seenAt >= 0 && seenAt < area->viewport()->width()) << zoom << ' ' << seenAt;
        EXPECT_EQ(Paint(strip, {strip->GetPositionColumn(), 200, 1, 1}).pixel(0, 0), 0xFFFFFFFF);
    }
}

TEST(WaveView, ShowsTheFinishedColumnsOfItsNewWidthWhereverItIsScrolled) {
    std::vector<std::uint32_t> pixels(std::size_t{1700} * 201);
    std::iota(pixels.begin(), pixels.end(), 0);
    QImage expected(reinterpret_cast<const uchar*>(pixels.data()), 1700, 201,
                    QImage::Format_RGBX8888);
    expected.convertTo(QImage::Format_RGB32);
    QPainter(&expected).fillRect(1000, 0, 700, 201, Qt::black);
    Program program;
    program.Engine().Zoom(2);
    program.delegate.GetWindow()->resize(850, 600);
    Await([&] { return program.Engine().GetImageSize().width == 1700; });
    program.AwaitScan();
    // The scan has ended: nobody else uses the image, whose place another one can take.
    auto& wave = const_cast<std::optional<WaveContext>&>(program.Engine().GetWaveContext());
    wave.emplace(pixels.data(), SIZE{1700, 201});
    while (wave->GetFinishedColumns() < 1000) {
        wave->PaintColumn(0, 0, {});
    }
    auto* const area = program.Find<WaveScrollArea>("waveScrollArea");
    for (const int scrolled : {0, 1, 850}) {
        area->horizontalScrollBar()->setValue(scrolled);
        const QRect part(100, 0, 750, 201); // beside the current position
        EXPECT_EQ(Paint(area->viewport(), part), expected.copy(part.translated(scrolled, 0)));
    }
}

} // namespace
