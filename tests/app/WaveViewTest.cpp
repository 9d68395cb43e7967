#include "app/Markers.h"
#include "app/WaveScrollArea.h"
#include "tests/app/Program.h"

#include <QScrollBar>
#include <QWheelEvent>

namespace {

using Pixels = std::vector<std::pair<int, QRgb>>; // of a row

QImage Black(const QSize& size, const Pixels& others = {}) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::black);
    for (const auto& [x, color] : others) {
        image.setPixel(x, 0, color);
    }
    return image;
}

struct StripProgram : Program {
    explicit StripProgram(const Samples& samples = Song()) : Program(Wav(samples)) {}
    QImage Paint(const QRect& part) {
        return strip->grab(part).toImage().convertToFormat(QImage::Format_RGB32);
    }
    bool IsBlack(const QRect& part) { return Paint(part) == Black(part.size()); }
    unsigned At(int column) { return Engine().bytesPerPixel * static_cast<unsigned>(column); }

    QWidget* const strip = Find("waveView");
    const int width = strip->width();
};

TEST(WaveView, PaintsTheMarkersOverOneAnotherAndTheirLabelsInside) {
    StripProgram program(Samples(32'000));
    const auto at = [&](int column) -> unsigned long long { return program.At(column); };
    const QRgb white = 0xFFFFFFFF, cyan = 0xFF00FFFF, yellow = 0xFFFFFF00;
    const std::tuple<CutPositions, unsigned long long, Pixels> cases[] = {
        {{}, 0, {{0, white}}},
        {{at(30), kUnsetPosition}, at(11) - 1, {{10, white}, {30, cyan}}},
        {{at(9), at(9)}, at(20), {{9, yellow}, {20, white}}},
        {{at(9), at(8)}, at(9), {{8, yellow}, {9, white}}},
        {{0, at(program.width)}, at(1), {{0, cyan}, {1, white}, {program.width - 1, yellow}}}};
    for (const auto& [marked, current, pixels] : cases) {
        program.Engine().cutPositions = marked;
        program.Engine().SetCurrentPosition(current);
        EXPECT_EQ(program.Paint({0, 200, program.width, 1}), Black({program.width, 1}, pixels));
    }
    for (const int x : {program.width / 2 - 1, program.width / 2}) {
        program.Engine().cutPositions = {at(x), kUnsetPosition};
        EXPECT_EQ(program.IsBlack({x - 200, 0, 200, 60}), x < program.width / 2);
        EXPECT_EQ(program.IsBlack({x + 1, 0, 200, 60}), x >= program.width / 2);
        EXPECT_TRUE(program.IsBlack({x - 200, 0, 200, 12}) && program.IsBlack({x + 1, 0, 200, 12}));
    }
    EXPECT_EQ(TimeLabel(61'234) + " " + TimeLabel(3'723'004), "1:01.234 62:03.004");
}

TEST(WaveView, AClickInTheStripMovesThere) {
    StripProgram program;
    program.strip->resize(program.width, 300);
    for (const int x : {0, 499, program.width - 1}) {
        QTest::mouseClick(program.strip, Qt::LeftButton, {}, QPoint(x, 200));
        QTest::mouseClick(program.strip, Qt::LeftButton, {}, QPoint(3, 201)); // below
        EXPECT_EQ(program.Engine().GetCurrentPosition(), program.At(x));
    }
}

TEST(WaveView, TheWheelZoomsAndItsSmallTurnsAddUp) {
    StripProgram program(Samples(96'000));
    const int most = program.Engine().maxZoom;
    const std::tuple<int, int, int> turns[] = {{120, 1, 4}, {-40, 1, 3},    {10, 3, 3},
                                               {10, 1, 4},  {120, 9, most}, {-120, 9, 1}};
    for (const auto& [delta, times, zoom] : turns) {
        for (int i = 0; i < times; ++i) {
            QWheelEvent turn({5, 5}, {5, 5}, {}, {0, delta}, {}, {}, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(program.strip, &turn);
        }
        EXPECT_EQ(program.Engine().zoom, zoom);
    }
}

TEST(WaveView, IsBlackWhileItsWidthChangesThenShowsTheWaveImageWhereverItIsScrolled) {
    StripProgram program;
    program.Engine().Zoom(2);
    program.delegate.GetWindow()->resize(850, 600);
    EXPECT_TRUE(program.IsBlack(program.strip->rect()));
    Await([&] { return program.Engine().GetImageSize().width == 1700; });
    program.AwaitScan();
    const WaveContext& wave = *program.Engine().GetWaveContext();
    const QImage whole(reinterpret_cast<const uchar*>(wave.GetPixels()), 1700, 201,
                       static_cast<qsizetype>(wave.GetBytesPerRow()), QImage::Format_RGBX8888);
    auto* const area = program.Find<WaveScrollArea>("waveScrollArea");
    for (const int scrolled : {0, 1, 850}) {
        area->horizontalScrollBar()->setValue(scrolled);
        const QRect part(100, 0, 750, 201); // beside the current position
        EXPECT_EQ(area->viewport()->grab(part).toImage().convertToFormat(QImage::Format_RGB32),
                  whole.copy(part.translated(scrolled, 0)).convertToFormat(QImage::Format_RGB32));
    }
}

TEST(WaveScroll, KeepsThePositionInView) {
    EXPECT_EQ(WaveScroll::Keep(0.25, 4000, 8000, 900, 1000), 1900);  // stays 100 from the left
    EXPECT_EQ(WaveScroll::Keep(0.25, 4000, 8000, 2000, 1000), 1500); // comes to the middle
    EXPECT_EQ(WaveScroll::Follow(0.5, 4000, 1500, 1000), 1500);
    EXPECT_EQ(WaveScroll::Follow(0.5, 4000, 1000, 1000), 1900); // a tenth from the left
}

} // namespace
