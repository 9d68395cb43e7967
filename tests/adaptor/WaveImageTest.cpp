#include "tests/adaptor/RecordingDelegate.h"
#include "tests/support/AlertRecorder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <random>
#include <thread>

namespace {

/// Expects a column with bars of so many pixels, upwards and downwards from the centre row.
void ExpectColumn(const WaveContext& image, int column, int up, int down) {
    for (int row = 0; row < 201; ++row) {
        const int distance = std::abs(row - 100);
        const bool isPainted = distance > 0 && distance <= (row < 100 ? up : down);
        const int full = isPainted ? 255 : 0;
        const int red = full * distance / 100;
        const auto* const pixel = reinterpret_cast<const unsigned char*>(
            image.GetPixels() + row * image.GetSize().width + column);
        ASSERT_TRUE(pixel[0] == red && pixel[1] == full - red && pixel[2] == 0)
            << "column " << column << ", row " << row;
    }
}

/// The pixels that the peak of every second one of `count` samples fills, a begun one too.
int BarLength(const Samples& samples, std::size_t first, std::size_t count) {
    int peak = 0;
    for (std::size_t i = first; i < std::min(first + count, samples.size()); i += 2) {
        peak = std::max(peak, std::abs(int{samples[i]}));
    }
    return (100 * peak + 32767) / 32768;
}

/// Expects the image of these stereo samples, each column as soon as it is finished.
void ExpectImage(const OpenedFile& file, const Samples& samples) {
    const WaveContext& image = *file.adaptor.GetWaveContext();
    const std::size_t samplesPerColumn = file.adaptor.bytesPerPixel / 2;
    for (int column = 0; column < image.GetSize().width; ++column) {
        while (image.GetFinishedColumns() <= column) {
            std::this_thread::yield();
        }
        const std::size_t first = samplesPerColumn * static_cast<std::size_t>(column);
        ASSERT_NO_FATAL_FAILURE(ExpectColumn(image, column,
                                             BarLength(samples, first, samplesPerColumn),
                                             BarLength(samples, first + 1, samplesPerColumn)));
    }
    file.delegate.AwaitScan();
}

/// Stereo noise, whose sides are as loud as chance will have it for half a second.
Samples Noise(std::size_t seconds) {
    std::mt19937 random(1);
    unsigned loudness[2] = {};
    Samples samples;
    while (samples.size() < 16'000 * seconds) {
        const std::size_t i = samples.size();
        unsigned& most = loudness[i % 2];
        most = i % 8'000 < 2 ? random() % 32'768 : most;
        samples.push_back(static_cast<std::int16_t>(random() % (2 * most + 1) - most));
    }
    return samples;
}

TEST(WaveImage, ShowsThePeaksOfTheCurrentEntryAtEveryWidthAfterAnyOther) {
    Samples samples = Noise(200);
    OpenedFile file(Wav(samples, 2), 1000);
    KlipraMac& adaptor = file.adaptor;
    samples.erase(samples.begin(), samples.begin() + 1'600'000);
    adaptor.cutPositions = {0, 3'200'000};
    ASSERT_TRUE(adaptor.Cut(false));
    // 20 000 to 32 sample frames a column
    for (const int width : {50, 25'000, 64, 800, 6'400, 1'000, 4'000, 40}) {
        adaptor.Zoom(20); // whose scan is stopped at once
        adaptor.SetWaveSize(width);
        ASSERT_TRUE(adaptor.CreateWaveImage());
        EXPECT_EQ(adaptor.bytesPerPixel * static_cast<unsigned>(width), adaptor.length);
        ExpectImage(file, samples);
    }
}

TEST(WaveImage, AColumnAndAZoomAreAMillisecondAtLeast) {
    const Samples samples(40, -32768);
    OpenedFile file(Wav(samples, 2), 6); // 8 sample frames each
    ExpectImage(file, samples);
    EXPECT_EQ(file.adaptor.bytesPerPixel, 32U);
    file.adaptor.ZoomDelta(7);
    EXPECT_EQ(file.adaptor.zoom, 1);
    EXPECT_EQ(OpenedFile(SilentWav(130), 1000).adaptor.maxZoom, 100);
}

TEST(WaveImage, IsBlackWithoutAudioAndHasALimit) {
    AlertRecorder person;
    OpenedFile file("not audio", 3);
    KlipraMac& adaptor = file.adaptor;
    adaptor.SetDrawSize(0);
    file.delegate.Zoom(1);
    ExpectImage(file, {});
    for (const int width : {0, KlipraMac::kMaxWaveWidth + 1}) {
        adaptor.SetWaveSize(width);
        EXPECT_FALSE(adaptor.CreateWaveImage() || adaptor.GetWaveContext()) << width;
    }
    EXPECT_EQ(adaptor.SearchSceanChange(), 0);
    adaptor.cutPositions = {0, 100};
    EXPECT_FALSE(adaptor.Cut(true));
    EXPECT_EQ(person.texts, "コンテンツのロードに失敗しました。保存できませんでした。");
}

TEST(WaveImage, GoesAwayWhileItIsScannedAndPlayed) {
    for (int i = 0; i < 20; ++i) {
        OpenedFile file(SilentWav(20), 1000);
        file.adaptor.SetCurrentPosition(file.adaptor.length - 100); // playback ends any moment
        file.adaptor.PlayStart();
    }
}

} // namespace
