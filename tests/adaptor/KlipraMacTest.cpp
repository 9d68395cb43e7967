#include "tests/adaptor/RecordingDelegate.h"
#include "tests/support/AlertRecorder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

TEST(KlipraMac, WorksWithoutAnEntryAndPassesHooksOn) {
    RecordingDelegate delegate;
    KlipraMac adaptor(&delegate, FormatType::MP3, "a.mp3", KlipraMac::Sound::Silent);
    adaptor.DisableTimer();
    adaptor.Zoom(7);
    EXPECT_EQ(adaptor.zoom, 7);
    adaptor.EnablePlayStopButton(true);
    EXPECT_TRUE(adaptor.playing);
    EXPECT_EQ(delegate.TakeCalls(), "disableTimer Zoom:7 playing");
    adaptor.DeleteAllChildren();
    adaptor.UpdateHistoryItem("/a/b");
    EXPECT_EQ(adaptor.GetCurrentHistoryItemName(), "");
    EXPECT_FALSE(adaptor.CreateWaveImage());
}

TEST(KlipraMac, CountsDefinedCutPositions) {
    RecordingDelegate delegate;
    KlipraMac adaptor(&delegate, FormatType::WAV, "a.wav", KlipraMac::Sound::Silent);
    const std::pair<CutPositions, int> cases[] = {
        {{}, 0}, {{.start = 5}, 1}, {{.end = 0}, 1}, {{5, 5}, 1}, {{5, 4}, 2}};
    for (const auto& [positions, count] : cases) {
        adaptor.cutPositions = positions;
        EXPECT_EQ(adaptor.GetDefinedCutPositionCount(), count) << positions.start;
    }
}

TEST(KlipraMac, AsksForAnOutputBesideTheOpenedFileUnderANewName) {
    AlertRecorder desktop;
    OpenedFile file(SilentWav(1));
    const std::string folder = fs::path(file.path).parent_path().string();
    EXPECT_EQ(file.adaptor.QueryOutputPath(), "");
    EXPECT_EQ(desktop.question, folder + "|a song (2).wav|wav");
    file.adaptor.PushHistory("#-1-2 saved.wav", file.path, false, 1);
    desktop.answer = "/x/y.wav";
    EXPECT_EQ(file.adaptor.QueryOutputPath(), "/x/y.wav");
    EXPECT_EQ(desktop.question, folder + "|a song-1-2.wav|wav");
}

TEST(KlipraMac, EditsLieInTemporaryFilesThatGoWithIt) {
    const std::string path = "/tmp/orvane.Klipra-" + std::to_string(getpid()) + "-1.wav";
    const TemporaryFolder precious;
    fs::create_symlink(precious.Write("precious", "precious"), path);
    {
        AlertRecorder desktop;
        OpenedFile file(SilentWav(2));
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
        EXPECT_EQ(TemporaryFolder::Read(saved), TemporaryFolder::Read(path));
        file.adaptor.UpdateHistoryItem(saved);
        EXPECT_EQ(file.adaptor.histories.back().name, "#-1 saved as.wav");
        EXPECT_EQ(file.adaptor.GetCurrentHistoryItemName(), "#-1");
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

} // namespace
