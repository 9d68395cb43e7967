#include "tests/adaptor/RecordingDelegate.h"
#include "tests/support/AlertRecorder.h"
#include "tests/support/FileSizeLimit.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>

namespace {

namespace fs = std::filesystem;

const std::string kSaveError = "保存できませんでした。";

/// 32 sample frames, 2^14 bytes a second: a position is the same in bytes and in single precision.
const WavBuilder kShortFile{.channels = 1, .rateHz = 8192, .samples = WavBuilder::Pattern(64)};

enum class Edit { Extract, Remove, Split };

/// What an edit makes of samples, from the first entry to the last.
std::vector<std::string> ResultsOf(Edit edit, const std::string& samples, const CutPositions& at) {
    const auto [start, end] = std::minmax(at.start, at.end);
    const std::string before = samples.substr(0, start);
    const std::string range = samples.substr(start, end - start);
    const std::string after = samples.substr(end);
    if (edit != Edit::Split) {
        return {edit == Edit::Extract ? range : before + after};
    }
    std::vector<std::string> pieces = {before, range, after};
    std::erase(pieces, "");
    return pieces;
}

std::string SamplesOf(const std::string& path) {
    return TemporaryFolder::Read(path).substr(kShortFile.Header().size());
}

/// Expects what is heard, where it stands, and which range is marked.
void ExpectLoaded(const KlipraMac& engine, const std::string& samples, unsigned long long position,
                  const CutPositions& marked) {
    EXPECT_EQ(engine.length, samples.size());
    EXPECT_EQ(engine.GetCurrentPosition(), position <= samples.size() ? position : 0);
    EXPECT_EQ(engine.cutPositions, marked);
    EXPECT_TRUE(engine.sceneChangePositions.empty());
}

/// Expects that each entry that can be gone back to has its file, and that no other file is left.
void ExpectFilesOfTheTree(KlipraMac& engine, std::map<std::string, std::string>& files) {
    std::map<std::string, std::string> expected;
    for (const int id : engine.FindHistoryTreeItem(1)->GetIds()) {
        const std::string& path = engine.FindHistoryItem(id)->path;
        ASSERT_EQ(SamplesOf(path), expected[path] = files[path]) << path;
    }
    for (const auto& [path, bytes] : files) {
        ASSERT_EQ(fs::exists(path), expected.contains(path)) << path;
    }
    files = expected;
}

TEST(Edits, InAnyOrderMakeTheirEntriesAndTouchNoOtherFile) {
    OpenedFile file(kShortFile.Bytes());
    KlipraMac& engine = file.adaptor;
    std::map<std::string, std::string> files = {{file.path, kShortFile.samples}};
    std::mt19937 random(1);
    for (int i = 0; i < 200; ++i) {
        const std::vector<int> shown = engine.FindHistoryTreeItem(1)->GetIds();
        engine.SelectHistory(shown[random() % shown.size()]);
        const int parent = engine.currentHistoryId;
        const std::string samples = files[engine.FindHistoryItem(parent)->path];
        const auto position = [&] { return random() % (samples.size() / 2 + 1) * 2; };
        const CutPositions positions = {position(), position()};
        const auto edit = static_cast<Edit>(random() % 3);
        const std::vector<std::string> results = ResultsOf(edit, samples, positions);
        if (positions.start == positions.end || (edit == Edit::Split && results.size() < 2)) {
            continue;
        }
        SCOPED_TRACE(testing::Message() << "edit " << i << " of entry " << parent);
        engine.cutPositions = positions;
        engine.sceneChangePositions = {1};
        ASSERT_TRUE(edit == Edit::Split ? engine.Split() : engine.Cut(edit == Edit::Extract));
        int id = engine.lastHistoryId - static_cast<int>(results.size());
        const auto* const node = engine.FindHistoryTreeItem(parent);
        ASSERT_EQ(node->children.size(), results.size());
        EXPECT_EQ(node->children.front().id, id + 1);
        for (const std::string& result : results) {
            files[engine.FindHistoryItem(++id)->path] = result;
        }
        ExpectFilesOfTheTree(engine, files);
        ExpectLoaded(engine, results.back(), edit == Edit::Remove ? positions.start : 0, {});
        engine.sceneChangePositions = {1};
        engine.SelectHistory(parent);
        ExpectLoaded(engine, samples, 0, positions);
    }
}

TEST(Edits, ThatFailKeepWhatThereWas) {
    AlertRecorder person;
    OpenedFile file(kShortFile.Bytes());
    KlipraMac& engine = file.adaptor;
    for (const unsigned long long nowhere : {0ULL, engine.length - 1, kUnsetPosition}) {
        engine.cutPositions = {kUnsetPosition, nowhere};
        EXPECT_FALSE(engine.Split()) << nowhere;
    }
    engine.cutPositions = {16, 32};
    fs::create_directory(engine.MakeTargetPath("3"));
    EXPECT_FALSE(engine.Split());
    EXPECT_EQ(SamplesOf(engine.MakeTargetPath("2")), kShortFile.samples.substr(16, 16));

    const std::string old = engine.MakeTargetPath("2-1");
    std::ofstream(old) << "old";
    fs::resize_file(engine.MakeTargetPath("2"), 30); // what the next cut would be made from
    EXPECT_FALSE(engine.Cut(false));
    EXPECT_EQ(person.texts, kSaveError + kSaveError);
    EXPECT_EQ(engine.histories.size(), 3);
    EXPECT_EQ(TemporaryFolder::Read(old), "old");
}

TEST(Edits, AreSavedWholeOrNotAtAllToAnyFileThatTheHistoryDoesNotUse) {
    AlertRecorder person;
    OpenedFile file(kShortFile.Bytes());
    KlipraMac& engine = file.adaptor;
    engine.cutPositions = {16, 48};
    ASSERT_TRUE(engine.Cut(true));
    engine.cutPositions = {0, 32};
    ASSERT_TRUE(engine.Cut(true));
    engine.cutPositions = {16, 8};
    const std::string edited = engine.FindHistoryItem(2)->path;
    fs::create_hard_link(file.path, file.folder.Path("link.wav"));
    std::string saved;
    for (const std::string& used : {file.path, file.folder.Path("link.wav"), edited}) {
        person.answer = used;
        EXPECT_FALSE(engine.Save(saved));
        engine.SaveRange();
        EXPECT_FALSE(engine.CutExec(true, edited, used, 0, 8));
        EXPECT_FALSE(engine.CopyFile(used, used));
    }
    person.answer = file.folder.Write("old.wav", "old");
    fs::permissions(person.answer, fs::perms(0600));
    {
        const FileSizeLimit diskIsFull(50);
        EXPECT_FALSE(engine.Save(saved));
        engine.SaveRange();
    }
    EXPECT_EQ(std::exchange(person.texts, "").size(), 8 * kSaveError.size());
    EXPECT_EQ(TemporaryFolder::Read(person.answer), "old");
    EXPECT_EQ(SamplesOf(file.path), kShortFile.samples);
    EXPECT_EQ(SamplesOf(edited), kShortFile.samples.substr(16, 32));
    EXPECT_FALSE(engine.IsSavedAll());

    EXPECT_TRUE(engine.Save(saved) && engine.histories.back().saved);
    EXPECT_EQ(TemporaryFolder::Read(saved), TemporaryFolder::Read(edited));
    EXPECT_EQ(fs::status(saved).permissions(), fs::perms(0600));
    engine.SaveRange();
    EXPECT_EQ(SamplesOf(saved), kShortFile.samples.substr(24, 8));
    EXPECT_EQ(person.texts, "");
}

} // namespace
