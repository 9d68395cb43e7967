#include "audio/PlayingStream.h"
#include "tests/audio/Samples.h"
#include "tests/support/WavBuilder.h"

#include <atomic>
#include <chrono>
#include <semaphore>

namespace {

using Clock = std::chrono::steady_clock;

/// A file whose reads take two seconds each while it is told so, unless they are let go.
class SlowFile : public File {
public:
    explicit SlowFile(const std::string& path) : File(OpenRegularFile(path.c_str())) {}

    ReadResult ReadAt(std::int64_t offset, void* to, std::size_t bytes) const override {
        if (isSlow) {
            entered.release();
            static_cast<void>(leave.try_acquire_for(std::chrono::seconds(2)));
        }
        return File::ReadAt(offset, to, bytes);
    }

    std::atomic<bool> isSlow{false};
    mutable std::counting_semaphore<> entered{0};
    mutable std::counting_semaphore<> leave{0};
};

TEST(PlayingStream, AnswersAtOnceWhileAReadTakesLong) {
    const TemporaryFolder folder;
    const std::string wav = WavBuilder{.samples = WavBuilder::Pattern(400'000)}.Bytes();
    for (const std::string& bytes : {wav, Clip("joint-stereo-44100.mp3")}) {
        const auto file = std::make_shared<SlowFile>(folder.Write("a", bytes));
        Output output; // a silent one
        const auto stream = std::make_shared<PlayingStream>(OpenDecoder(file, 1), output);
        std::counting_semaphore<> ended{0};
        stream->AddEndCallback([&] { ended.release(); });
        const std::int64_t length = stream->Format().sampleFrames;
        file->isSlow = true;
        EXPECT_TRUE(stream->Play(false));
        file->entered.acquire();

        const auto begin = Clock::now();
        for (int i = 0; i < 10; ++i) {
            EXPECT_TRUE(stream->IsActive());
            EXPECT_TRUE(stream->SetPosition(length / 2));
            EXPECT_EQ(stream->Position(), length / 2);
            EXPECT_TRUE(stream->Stop());
            EXPECT_FALSE(stream->IsActive());
            EXPECT_TRUE(stream->SetPosition(length - 100 - i));
            EXPECT_TRUE(stream->Play(false));
            EXPECT_EQ(stream->Position(), length - 100 - i);
        }
        EXPECT_LT(Clock::now() - begin, std::chrono::seconds(1));
        file->isSlow = false;
        file->leave.release();
        ended.acquire();
        EXPECT_EQ(stream->Position(), length);
        stream->Close();
    }
}

} // namespace
