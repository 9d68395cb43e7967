#include "adaptor/TemporaryFiles.h"

#include "tests/adaptor/RecordingDelegate.h"
#include "tests/support/AlertRecorder.h"

#include <gtest/gtest.h>

#include <set>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

TEST(TemporaryFiles, HaveNamesThatFitAndAreDeletedWithTheirProcess) {
    const TemporaryFolder folder;
    for (const char* const other : {"x-orvane.Klipra-4242-1.mp3", "orvane.Klipra-42421-1.mp3"}) {
        folder.Write(other, "");
    }
    const TemporaryFiles files(folder.Path(""), 4242);
    std::set<std::string> paths;
    for (std::string suffix = "1"; suffix.size() < 1000; suffix += "-1") {
        const std::string path = files.MakePath(suffix, "wav");
        EXPECT_TRUE(std::ofstream(path)) << path;
        EXPECT_TRUE(paths.insert(path).second) << path;
    }
    files.DeleteAll();
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path("")), {}), 2);
}

TEST(TemporaryFiles, HoldTheEditsAndGoWithTheAdaptor) {
    const std::string path = "/tmp/orvane.Klipra-" + std::to_string(getpid()) + "-1.wav";
    const TemporaryFolder precious;
    fs::create_symlink(precious.Write("precious", "precious"), path);
    {
        AlertRecorder desktop;
        OpenedFile file(SilentWav(2));
        EXPECT_EQ(file.adaptor.QueryOutputPath(), "");
        EXPECT_TRUE(desktop.question.ends_with("|a song (2).wav|wav")) << desktop.question;
        file.adaptor.cutPositions = {0, 16000};
        ASSERT_TRUE(file.adaptor.Cut(true));
        EXPECT_EQ(fs::symlink_status(path).type(), fs::file_type::regular);
        file.adaptor.UpdateHistoryItem("/x/saved as.wav");
        EXPECT_EQ(file.adaptor.histories.back().name, "#-1 saved as.wav");
        file.adaptor.QueryOutputPath();
        EXPECT_TRUE(desktop.question.ends_with("|a song-1.wav|wav")) << desktop.question;
    }
    EXPECT_EQ(fs::symlink_status(path).type(), fs::file_type::not_found);
    EXPECT_EQ(TemporaryFolder::Read(precious.Path("precious")), "precious");
}

} // namespace
