#include "audio/PlaybackQueue.h"

#include <gtest/gtest.h>

#include <numeric>
#include <thread>

namespace {

using Samples = std::vector<std::int16_t>;

Samples Count(std::int16_t from, std::size_t count) {
    Samples samples(count);
    std::iota(samples.begin(), samples.end(), from);
    return samples;
}

Samples Take(PlaybackQueue& queue, std::size_t count) {
    Samples samples(count, 77);
    queue.Fill(samples.data(), static_cast<std::int64_t>(count));
    return samples;
}

TEST(PlaybackQueue, HandsOutWhatWasPushedAndSilenceWhenThereIsNone) {
    PlaybackQueue queue({8000, 1});
    queue.Restart(1000);
    queue.Push(Count(1, 5));
    EXPECT_EQ(Take(queue, 3), Count(1, 3));
    EXPECT_EQ(Take(queue, 4), (Samples{4, 5, 0, 0}));
    EXPECT_EQ(queue.Taken(), 1005);
    queue.Push(Count(6, 2));
    EXPECT_EQ(Take(queue, 2), Count(6, 2)) << "what was late is not lost";
}

TEST(PlaybackQueue, IsHeardAPeriodAfterItWasTaken) {
    PlaybackQueue queue({1'000'000, 1}); // a sample frame takes a microsecond
    queue.Restart(50);
    EXPECT_EQ(queue.Heard(), 50);
    queue.Push(Count(0, 20));
    queue.MarkEnd();
    Take(queue, 10);
    EXPECT_EQ(queue.Heard(), 50) << "the device only begins to play it";
    Take(queue, 10);
    while (queue.Heard() < 60) {
        std::this_thread::yield();
    }
    EXPECT_EQ(queue.Heard(), 60) << "no further than what was taken before";
    EXPECT_FALSE(queue.Drained());
    Take(queue, 10);
    EXPECT_FALSE(queue.Drained()) << "the last ten are only now being heard";
    Take(queue, 10);
    EXPECT_TRUE(queue.Drained());
    EXPECT_EQ(queue.Heard(), 70);
}

} // namespace
