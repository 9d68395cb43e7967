#include "fuzz/Seeds.h"
#include "fuzz/Targets.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

// The choices that the files are tried with: each flag, short, long and empty ranges.
const std::string kChoices[] = {
    std::string(),
    std::string("\x01\x00\x0A\x00\x30\x10\x00", 7),
    std::string("\x02\x00\x0A\xFF\xFF\x00\x7F", 7),
    std::string("\x03\x40\x01\x40\x05", 5),
};

struct Input {
    std::string name;
    std::string bytes;
};

void AddFolder(std::vector<Seed>& files, const std::string& folder) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        files.push_back({entry.path().filename(), TemporaryFolder::Read(entry.path())});
    }
}

std::vector<Input> Inputs() {
    std::vector<Seed> files = Mp3Seeds();
    for (Seed& seed : WavSeeds()) {
        files.push_back(std::move(seed));
    }
    AddFolder(files, KLIPRA_CLIPS);
    std::vector<Input> inputs;
    for (const Seed& file : files) {
        for (const std::string& choices : kChoices) {
            inputs.push_back({file.name, AsInput(choices, file.file)});
        }
    }
    // What was found has its own choices in it.
    std::vector<Seed> found;
    AddFolder(found, KLIPRA_CORPUS);
    for (const Seed& file : found) {
        inputs.push_back({file.name, file.file});
    }
    return inputs;
}

void Replay(void (*target)(const FuzzInput&)) {
    static const std::vector<Input> inputs = Inputs();
    ASSERT_FALSE(inputs.empty());
    for (const Input& input : inputs) {
        SCOPED_TRACE(input.name);
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(input.bytes.data());
        EXPECT_NO_THROW(target(FuzzInput(bytes, input.bytes.size())));
    }
}

} // namespace

TEST(Replay, Parser) {
    Replay(FuzzParser);
}

TEST(Replay, CutMP3) {
    Replay(FuzzCutMP3);
}

TEST(Replay, CutWAV) {
    Replay(FuzzCutWAV);
}

TEST(Replay, Stream) {
    Replay(FuzzStream);
}

TEST(Replay, Info) {
    Replay(FuzzInfo);
}
