#include "fuzz/Targets.h"
#include "tests/support/Mp3Builder.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <gtest/gtest.h>

namespace {

// The choices that each file is tried with: each flag, short, long and empty ranges.
constexpr char kChoices[][FuzzInput::kChoiceBytes + 1] = {
    "\x00\x00\x00\x00\x00\x00\x00\x00",
    "\x01\x00\x0A\x00\x30\x10\x00\x00",
    "\x02\x00\x0A\xFF\xFF\x00\x7F\x00",
    "\x03\x40\x01\x40\x05\x00\x00\x00",
};

std::string Repeated(const std::string& text, int count) {
    std::string result;
    for (; count > 0; --count) {
        result += text;
    }
    return result;
}

// Slow, or large in memory, for whoever looks at all of it again and again.
std::vector<std::string> LargeFiles() {
    const FrameFormat small{.version = 2, .bitrateKbps = 8, .rateHz = 24000, .channelMode = 3};
    const std::string audio = Mp3Builder().Frames(6).Bytes();
    const std::string chunks = Repeated(WavBuilder::Chunk("junk", ""), 20000);
    return {
        WavBuilder{.chunksBefore = chunks, .samples = WavBuilder::Pattern(4000)}.Bytes(),
        Mp3Builder().Format(small).Frames(5000).Bytes(),
        Repeated(Mp3Builder().Frames(1).Format(small).Frames(1).Bytes(), 100), // in turn
        Repeated(FrameFormat().Header(), 20000),
        std::string(100000, '\xFF'),
        std::string(32768, '\0') + audio,
        audio + Repeated("\xFF\xFB\x04\x64", 20000), // headers of a free format
        audio + Repeated(Mp3Builder().Id3v1().Bytes(), 5000),
        audio + Repeated(Mp3Builder().Id3v2(0, true).Bytes(), 4000),
        audio + Repeated(Mp3Builder().Ape(0, false).Bytes(), 5000),
        Repeated(Mp3Builder().Id3v2(0).Bytes(), 5000) + audio,
    };
}

constexpr void (*kTargets[])(const FuzzInput&) = {FuzzParser,      FuzzCutMP3, FuzzCutWAV,
                                                  FuzzCutWholeWAV, FuzzFinish, FuzzStream,
                                                  FuzzInfo,        FuzzList,   FuzzJournal};

class Replay : public testing::TestWithParam<std::size_t> {
protected:
    static void Try(const std::string& input) {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(input.data());
        EXPECT_NO_THROW(kTargets[GetParam()](FuzzInput(bytes, input.size())));
    }

    static void TryWithChoices(const std::string& file) {
        for (const char* choices : kChoices) {
            Try(std::string(choices, FuzzInput::kChoiceBytes) + file);
        }
    }
};

} // namespace

TEST_P(Replay, BreaksNoLaw) {
    for (const std::string& file : LargeFiles()) {
        SCOPED_TRACE(file.size());
        TryWithChoices(file);
    }
    for (const auto& clip : std::filesystem::directory_iterator(KLIPRA_CLIPS)) {
        SCOPED_TRACE(clip.path());
        TryWithChoices(TemporaryFolder::Read(clip.path()));
    }
    for (const auto& entry : std::filesystem::directory_iterator(KLIPRA_CORPUS)) {
        SCOPED_TRACE(entry.path());
        const std::string input = TemporaryFolder::Read(entry.path());
        Try(input); // it has its own choices in it
        TryWithChoices(input.substr(std::min(FuzzInput::kChoiceBytes, input.size())));
    }
}

INSTANTIATE_TEST_SUITE_P(Targets, Replay, testing::Range(std::size_t{0}, std::size(kTargets)));
