#include "tests/adaptor/RecordingDelegate.h"
#include "tests/support/AlertRecorder.h"

#include <gtest/gtest.h>

#include <set>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/// What this process has in the folder of the edits, and what stands in the test's own.
std::set<std::string> FilesOf(const OpenedFile& file) {
    const std::string process = std::to_string(getpid()) + "-";
    std::set<std::string> found;
    for (const std::string& folder : {std::string("/tmp"), file.folder.Path("")}) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            const std::string name = entry.path().filename().string();
            if (folder != "/tmp" || name.find(process) != std::string::npos) {
                found.insert(entry.path().string());
            }
        }
    }
    return found;
}

TEST(BackgroundWork, ThatIsCancelledLeavesNothingAndSaysNothing) {
    AlertRecorder person;
    OpenedFile file(SilentWav(120));
    KlipraMac& adaptor = file.adaptor;
    person.answer = file.folder.Write("old.wav", "old");
    const CutPositions marked = {160'000, 1'600'000};
    adaptor.cutPositions = {0, adaptor.length - 2};
    ASSERT_TRUE(adaptor.Cut(true));
    adaptor.cutPositions = marked;
    const std::set<std::string> files = FilesOf(file);
    std::string path;
    const std::function<bool()> commands[] = {
        [&] { return adaptor.Cut(true); }, [&] { return adaptor.Cut(false); },
        [&] { return adaptor.Split(); }, [&] { return adaptor.Save(path); },
        [&] { return adaptor.SaveRange(), !adaptor.GetLastOutput().empty(); }};
    for (unsigned i = 0; i < 60; ++i) {
        const auto& command = commands[i % std::size(commands)];
        unsigned pieces = i % 3; // of a split, before the one that is cancelled
        file.delegate.onWork = [&](BackgroundWork& work) {
            EXPECT_TRUE(adaptor.IsBusy());
            EXPECT_FALSE(adaptor.Cut(true) || adaptor.Split() || adaptor.Save(path));
            adaptor.SelectHistory(1);
            if (&command != &commands[2] || pieces-- == 0) {
                std::this_thread::sleep_for(std::chrono::microseconds(i * 7));
                work.Cancel();
            }
        };
        if (command()) { // the work was quicker
            adaptor.SelectHistory(2);
            adaptor.cutPositions = marked;
            adaptor.DeleteAllChildren();
            adaptor.EnableSaveButton();
            file.folder.Write("old.wav", "old");
            continue;
        }
        EXPECT_TRUE(adaptor.GetLastFailure().IsCancelled());
        EXPECT_EQ(adaptor.currentHistoryId, 2);
        EXPECT_EQ(adaptor.cutPositions, marked);
        EXPECT_TRUE(adaptor.FindHistoryTreeItem(2)->children.empty());
        EXPECT_EQ(FilesOf(file), files);
        EXPECT_EQ(TemporaryFolder::Read(person.answer), "old");
    }
    EXPECT_EQ(person.texts, "");
}

TEST(BackgroundWork, TellsItsEndOnceWheneverItIsAsked) {
    for (int i = 0; i < 100; ++i) {
        std::atomic<int> told{0};
        {
            BackgroundWork work([] {});
            std::this_thread::sleep_for(std::chrono::microseconds(i));
            work.WhenDone([&] { ++told; });
        }
        EXPECT_EQ(told, 1);
    }
}

} // namespace
