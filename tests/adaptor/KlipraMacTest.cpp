#include "tests/adaptor/RecordingDelegate.h"
#include "tests/support/AlertRecorder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

TEST(KlipraMac, WorksWithoutAnEntry) {
    RecordingDelegate delegate;
    KlipraMac adaptor(&delegate, FormatType::MP3, "a.mp3", KlipraMac::Sound::Silent);
    adaptor.Zoom(7);
    EXPECT_EQ(adaptor.zoom, 7);
    adaptor.EnablePlayStopButton(true);
    EXPECT_TRUE(adaptor.playing);
    EXPECT_EQ(delegate.TakeCalls(), "Zoom:7 playing");
    adaptor.DeleteAllChildren();
    EXPECT_EQ(adaptor.GetCurrentHistoryItemName(), "");
    EXPECT_FALSE(adaptor.CreateWaveImage());
    const std::pair<CutPositions, int> cases[] = {
        {{}, 0}, {{.start = 5}, 1}, {{.end = 0}, 1}, {{5, 5}, 1}, {{5, 4}, 2}};
    for (const auto& [positions, count] : cases) {
        adaptor.cutPositions = positions;
        EXPECT_EQ(adaptor.GetDefinedCutPositionCount(), count) << positions.start;
    }
}

TEST(KlipraMac, EditsLieInTemporaryFilesThatGoWithIt) {
    const std::string path = "/tmp/orvane.Klipra-" + std::to_string(getpid()) + "-1.wav";
    const TemporaryFolder precious;
    fs::create_symlink(precious.Write("precious", "precious"), path);
    {
        AlertRecorder desktop;
        OpenedFile file(SilentWav(2));
        const std::string folder = fs::path(file.path).parent_path().string();
        EXPECT_EQ(file.adaptor.QueryOutputPath(), "");
        EXPECT_EQ(desktop.question, folder + "|a song (2).wav|wav");
        file.adaptor.cutPositions = {0, 16000};
        ASSERT_TRUE(file.adaptor.Cut(true));
        EXPECT_EQ(fs::symlink_status(path).type(), fs::file_type::regular);

        desktop.answer = path; // what an entry of the history uses
        std::string saved;
        EXPECT_FALSE(file.adaptor.Save(saved));
        file.adaptor.ErrorMsg(3);
        EXPECT_EQ(desktop.texts, "保存できませんでした。不明なエラー");
        desktop.answer = precious.Path("saved as.wav");
        EXPECT_TRUE(file.adaptor.Save(saved));
        file.adaptor.UpdateHistoryItem(saved);
        EXPECT_EQ(file.adaptor.histories.back().name, "#-1 saved as.wav");
        EXPECT_EQ(file.adaptor.QueryOutputPath(), saved);
        EXPECT_EQ(desktop.question, folder + "|a song-1.wav|wav");
    }
    EXPECT_EQ(fs::symlink_status(path).type(), fs::file_type::not_found);
    EXPECT_EQ(TemporaryFolder::Read(precious.Path("precious")), "precious");
}

TEST(KlipraMac, GoesAwayWhileItPlaysAndScans) {
    for (int i = 0; i < 20; ++i) {
        OpenedFile file(SilentWav(20), 1000);
        file.adaptor.SetCurrentPosition(file.adaptor.length - 100); // playback ends any moment
        file.adaptor.PlayStart();
    }
}

/// A subtree as text: an id and, in brackets, its children.
std::string Shape(const HistoryTreeItem& node) {
    std::string shape = std::to_string(node.id);
    for (const HistoryTreeItem& child : node.children) {
        shape.append(&child == &node.children.front() ? "(" : " ").append(Shape(child));
    }
    return node.children.empty() ? shape : shape.append(")");
}

TEST(HistoryTree, HoldsTheLatestEditOfEachEntry) {
    OpenedFile file(SilentWav(3));
    KlipraMac& adaptor = file.adaptor;
    EXPECT_EQ(file.delegate.TakeCalls(), "Zoom:1 enableZoomMenu");
    adaptor.cutPositions = {0, 32000};
    ASSERT_TRUE(adaptor.Cut(true));
    EXPECT_EQ(file.delegate.TakeCalls(),
              "refresh:2 Zoom:1 enableZoomMenu enableTimer EnableCutButton "
              "EnableSaveButton EnableSceneChangeMoveButton");
    adaptor.cutPositions = {8000, 16000};
    ASSERT_TRUE(adaptor.Split());
    EXPECT_EQ(Shape(*adaptor.FindHistoryTreeItem(1)), "1(2(3 4 5))");

    adaptor.SelectHistory(2);
    adaptor.cutPositions = {0, 8000};
    ASSERT_TRUE(adaptor.Cut(false));
    adaptor.PushHistory("#-9", file.path, false, 4); // whose parent the tree no longer holds
    EXPECT_EQ(Shape(*adaptor.FindHistoryTreeItem(1)), "1(2(6) 7)");
}

TEST(HistoryTree, DeepChainsNeedNoStack) {
    constexpr int kDepth = 300'000; // 100 bytes of stack each would be too much
    HistoryTreeItem root(1);
    HistoryTreeItem* node = &root;
    for (int id = 2; id <= kDepth; ++id) {
        node = &node->children.emplace_back(id);
    }
    HistoryTreeItem copy;
    copy = root;
    root.children.clear();
    copy = HistoryTreeItem(copy.children.front()); // a part of itself
    EXPECT_EQ(copy.Find(1), nullptr);
    EXPECT_NE(copy.Find(kDepth), nullptr);
}

} // namespace
