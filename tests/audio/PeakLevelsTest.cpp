#include "audio/PeakLevels.h"

#include "audio/ChannelFold.h"

#include <gtest/gtest.h>

namespace {

TEST(MeasurePeaks, FindsThePeakWhereverItLies) {
    for (const std::size_t size : {2U, 18U, 34U, 882U}) {
        for (std::size_t at = 0; at < size; ++at) {
            SCOPED_TRACE(testing::Message() << at << " of " << size);
            std::vector<std::int16_t> samples(size, 10);
            samples[at] = at % 4 < 2 ? std::int16_t{-32768} : std::int16_t{16384};
            const float peak = at % 4 < 2 ? 1.0F : 0.5F;
            const PeakLevels stereo = MeasurePeaks(samples, 2);
            EXPECT_EQ(at % 2 == 0 ? stereo.left : stereo.right, peak);
            EXPECT_EQ(at % 2 == 0 ? stereo.right : stereo.left, 10.0F / 32768);
            const PeakLevels mono = MeasurePeaks(samples, 1);
            EXPECT_EQ(mono.left, peak);
            EXPECT_EQ(mono.right, peak);
        }
    }
    const std::int16_t three[] = {1, 2, 3, 4, -9, 5};
    const PeakLevels peaks = MeasurePeaks(three, 3); // even channels are left and odd ones right
    EXPECT_EQ(peaks.left * 32768, 5);
    EXPECT_EQ(peaks.right * 32768, 9);
}

TEST(FoldToStereo, TakesTheMeanOfEachSide) {
    EXPECT_EQ(PlayedChannels(6), 6U);
    EXPECT_EQ(PlayedChannels(7), 2U);
    const std::int16_t three[] = {100, 7, 200, -32768, -32768, -32768};
    std::vector<std::int16_t> folded;
    FoldToStereo(three, 3, folded);
    EXPECT_EQ(folded, (std::vector<std::int16_t>{150, 7, -32768, -32768}));
}

} // namespace
