#include "tests/adaptor/RecordingDelegate.h"
#include "tests/support/AlertRecorder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

/// Pixels painted upwards and downwards from the centre row.
using Bars = std::vector<std::pair<int, int>>;

/// Expects the columns from x on to show these bars and nothing else.
void ExpectBars(const WaveContext& image, int x, const Bars& bars) {
    for (const auto& [up, down] : bars) {
        for (int row = 0; row < 201; ++row) {
            const int distance = std::abs(row - 100);
            const bool isPainted = distance > 0 && distance <= (row < 100 ? up : down);
            const int red = isPainted ? 255 * distance / 100 : 0;
            const int green = isPainted ? 255 - red : 0;
            const auto* const pixel = reinterpret_cast<const unsigned char*>(
                image.GetPixels() + row * image.GetSize().width + x);
            EXPECT_TRUE(pixel[0] == red && pixel[1] == green && pixel[2] == 0)
                << "column " << x << ", row " << row;
        }
        ++x;
    }
}

/// The same of the whole image, once it is scanned.
void ExpectWholeImage(const OpenedFile& file, const Bars& bars) {
    file.delegate.AwaitScan();
    const WaveContext& image = *file.adaptor.GetWaveContext();
    ASSERT_EQ(image.GetSize(), (SIZE{static_cast<int>(bars.size()), 201}));
    EXPECT_EQ(image.GetFinishedColumns(), image.GetSize().width);
    ExpectBars(image, 0, bars);
}

TEST(WaveImage, ShowsTheLeftPeakUpwardsAndTheRightDownwards) {
    Samples samples(std::size_t{2} * 600); // 100 sample frames a column
    samples[0] = -32768;                   // left
    samples[1 + 2 * 99] = 16384;
    samples[2 * 150] = 131; // 0.004
    samples[1 + 2 * 150] = -1;
    samples[2 * 200] = samples[1 + 2 * 299] = 8192;
    samples[1 + 2 * 599] = 32767;
    OpenedFile file(Wav(samples, 2), 6);
    ExpectWholeImage(file, {{100, 50}, {1, 1}, {25, 25}, {0, 0}, {0, 0}, {0, 100}});
    const std::string calls = file.delegate.TakeCalls() + " ";
    EXPECT_EQ(calls.find("Zoom:1 setNeedRefresh:2147483647 enableTimer "), 0U) << calls;
    EXPECT_NE(calls.find(" setNeedRefresh:2 "), std::string::npos) << calls;
}

TEST(WaveImage, MeasuresLongColumnsToTheirEnd) {
    Samples samples(std::size_t{4} * 20'000); // 2.5 s each
    samples[19'999] = 16384;
    samples[20'000] = 8192;
    samples[48'001] = -32768;
    samples[60'000] = 4096;
    samples[79'999] = 8192;
    OpenedFile file(Wav(samples), 4);
    ExpectWholeImage(file, {{50, 50}, {25, 25}, {100, 100}, {25, 25}});
}

TEST(WaveImage, AColumnAndAZoomAreAMillisecondAtLeast) {
    OpenedFile file(Wav(Samples(20, 16384)), 6); // 8 sample frames each
    ExpectWholeImage(file, {{50, 50}, {50, 50}, {50, 50}, {0, 0}, {0, 0}, {0, 0}});
    EXPECT_EQ(file.adaptor.bytesPerPixel, 16U);
    EXPECT_EQ(file.adaptor.maxZoom, 0);
    EXPECT_EQ(OpenedFile(SilentWav(30), 1000).adaptor.maxZoom, 30);
    EXPECT_EQ(OpenedFile(SilentWav(130), 1000).adaptor.maxZoom, 100);
}

// Rounding one column's length must not displace the last of 100 000.
TEST(WaveImage, ColumnsOfTenHoursLineUpWithPositions) {
    constexpr std::size_t kColumnBytes = 720; // at 1000 sample frames a second
    const int columns[] = {1, 50'001, 99'998};
    std::string samples(100'000 * kColumnBytes, '\0');
    for (const int column : columns) {
        for (const int margin : {7, 713}) { // the high bytes of the 3rd from either end
            samples[column * kColumnBytes + margin] = 0x40;
        }
    }
    OpenedFile file(WavBuilder{.channels = 1, .rateHz = 1000, .samples = samples}.Bytes(), 1000);
    file.adaptor.Zoom(100);
    file.delegate.AwaitScan();
    EXPECT_EQ(file.adaptor.bytesPerPixel, kColumnBytes);
    for (const int column : columns) {
        ExpectBars(*file.adaptor.GetWaveContext(), column - 1, {{0, 0}, {50, 50}, {0, 0}});
    }
}

TEST(WaveImage, ZoomChangesInARowLeaveTheLastOne) {
    Samples samples(std::size_t{8000} * 60);
    Bars bars;
    for (std::size_t second = 0; second < 60; ++second) {
        samples[second * 8000 + 4000] = static_cast<std::int16_t>(second * 512);
        bars.emplace_back((second * 50 + 31) / 32, (second * 50 + 31) / 32);
    }
    OpenedFile file(Wav(samples), 60);
    for (int factor = 20; factor >= 1; --factor) {
        file.adaptor.Zoom(factor);
        const WaveContext& image = *file.adaptor.GetWaveContext();
        ASSERT_EQ(image.GetSize().width, factor * 60);
        if (factor % 4 == 0) { // let some of them come a little further
            while (image.GetFinishedColumns() < 2 * factor) {
            }
            ExpectBars(image, factor + factor / 2, {bars[1]}); // the middle of the second second
        }
    }
    ExpectWholeImage(file, bars);
}

TEST(WaveImage, IsBlackForAFileThatCannotBeDecodedAndHasALimit) {
    AlertRecorder desktop;
    OpenedFile file("not audio", 3);
    EXPECT_EQ(desktop.texts, "コンテンツのロードに失敗しました。");
    file.delegate.Zoom(1);
    ExpectWholeImage(file, {{0, 0}, {0, 0}, {0, 0}});
    for (const int width : {0, 2'000'000'000}) {
        file.adaptor.SetWaveSize(width);
        EXPECT_FALSE(file.adaptor.CreateWaveImage()) << width;
        EXPECT_FALSE(file.adaptor.GetWaveContext()) << width;
    }
}

} // namespace
