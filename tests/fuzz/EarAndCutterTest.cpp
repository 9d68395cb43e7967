#include "audio/FrameWalker.h"
#include "cutting/FrameWalk.h"
#include "fuzz/FuzzInput.h"
#include "mpeg/MPAFile.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <optional>
#include <string_view>
#include <vector>

namespace {

using Offsets = std::vector<long long>;

/// Files whose frames differ, and why. The ear wants to be sure, for what it takes for a frame is
/// heard; the cutter wants to lose nothing.
constexpr const char* kOnlyOneTakes[][2] = {
    // The ear's audio ends where the trailing tags begin; the cutter's last frame is whole where
    // the file is long enough for it.
    {"ape-size-31-header-behind", "a tag begins inside the last frame"},
    {"ape-size-64-header-behind", "a tag begins inside the last frame"},
    {"everything-ends-at-1395", "a tag begins inside the last frame"},
    // The ear plays the stream of the first frame alone; the cutter goes on, and warns.
    {"remains-of-earlier-frames", "the format changes"},
    {"sound-formats-in-turn", "the format changes"},
    {"two-recordings-joined", "the format changes"},
    // The ear begins where another frame follows; the cutter with the first header that it meets.
    {"ape-in-a-recording", "nothing confirms the start"},
    {"damaged-ape-between-tags", "nothing confirms the start"},
    {"xing-in-24-bytes-then-garbage", "nothing confirms the start"},
    // The same behind bytes that are no frame.
    {"damaged-tags-before-a-recording", "nothing confirms a frame behind garbage"},
    {"small-frames-of-noise", "nothing confirms a frame behind garbage"},
    {"small-frames-then-ff", "nothing confirms a frame behind garbage"},
    {"vbri-twice", "nothing confirms a frame behind garbage"},
    {"xing-table-over-small-frames", "nothing confirms a frame behind garbage"},
};

// Nothing where it cannot be opened.
std::optional<Offsets> Heard(const std::string& path) {
    FileWindow window(File::Open(path.c_str()));
    const auto stream = FindMpegStream(window);
    if (!stream) {
        return std::nullopt;
    }
    Offsets offsets;
    for (FrameWalker walker(window, *stream); walker.Next();) {
        offsets.push_back(walker.OffsetBytes());
    }
    return offsets;
}

std::optional<Offsets> Cut(const std::string& path) try {
    CMPAFile file(path.c_str());
    FrameWalk walk(file, FrameWalk::Stump::NoFrame);
    if (file.GetVBRHeader() != nullptr) {
        walk.Step();
    }
    Offsets offsets;
    for (; walk.Current() != nullptr; walk.Step()) {
        offsets.push_back(walk.Current()->GetOffset());
    }
    return offsets;
} catch (const CMPAException&) {
    return std::nullopt;
}

// The table's reason for a file; null for one whose frames have to be the same.
const char* ReasonToDiffer(const std::string& name) {
    const auto* found = std::find_if(std::begin(kOnlyOneTakes), std::end(kOnlyOneTakes),
                                     [&](const auto& entry) { return name == entry[0]; });
    return found == std::end(kOnlyOneTakes) ? nullptr : (*found)[1];
}

// Returns whether both could open it.
bool Compare(const std::string& name, const FuzzInput& input) {
    const auto heard = Heard(input.Path());
    const auto cut = Cut(input.Path());
    if (!heard || !cut) {
        return false;
    }
    if (const char* reason = ReasonToDiffer(name)) {
        EXPECT_NE(*heard, *cut) << name << " no longer differs, although " << reason;
    } else {
        EXPECT_EQ(*heard, *cut) << name;
    }
    return true;
}

} // namespace

TEST(EarAndCutter, FramesThatAreHeardAreFramesThatAreCut) {
    constexpr int kMostlyOpened = 80;
    int opened = 0;
    for (const char* folder : {KLIPRA_CLIPS, KLIPRA_CORPUS}) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            // Those of the corpus begin with choices.
            std::string bytes = TemporaryFolder::Read(entry.path());
            if (folder == std::string_view(KLIPRA_CLIPS)) {
                bytes.insert(0, FuzzInput::kChoiceBytes, '\0');
            }
            const FuzzInput input(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                  bytes.size());
            opened += Compare(entry.path().filename(), input) ? 1 : 0;
        }
    }
    EXPECT_GE(opened, kMostlyOpened);
}
