#include "adaptor/CopyFileReplacing.h"
#include "adaptor/TemporaryFiles.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <set>

namespace {

namespace fs = std::filesystem;

std::ptrdiff_t CountFiles(const TemporaryFolder& folder) {
    return std::distance(fs::directory_iterator(folder.Path("")), {});
}

TEST(TemporaryFiles, HaveNamesThatFitAndAreDeletedWithTheirProcess) {
    const TemporaryFolder folder;
    const std::string other = folder.Write("orvane.Klipra-4243-1.mp3", "");
    folder.Write("x-orvane.Klipra-4242-1.mp3", "");
    folder.Write("orvane.Klipra-42421-1.mp3", "");
    const TemporaryFiles files(folder.Path(""), 4242);
    EXPECT_EQ(files.MakePath("2-1", "mp3"), folder.Path("/orvane.Klipra-4242-2-1.mp3"));
    fs::create_symlink(other, files.MakePath("2-1", "mp3"));
    std::set<std::string> paths;
    for (std::string suffix = "1"; suffix.size() < 1000; suffix += "-1") {
        const std::string path = files.MakePath(suffix, "wav");
        EXPECT_EQ(path, files.MakePath(suffix, "wav"));
        EXPECT_TRUE(std::ofstream(path)) << path;
        EXPECT_TRUE(paths.insert(path).second) << path;
    }
    files.DeleteAll();
    EXPECT_EQ(CountFiles(folder), 3);
    TemporaryFiles(folder.Path("no/such/folder"), 4242).DeleteAll();
}

TEST(CopyFileReplacing, ReplacesAFileWholeOrNotAtAll) {
    const TemporaryFolder folder;
    const std::string from = folder.Write("from", std::string(100'000, 'n'));
    const std::string to = folder.Write("to", "old");
    fs::permissions(to, fs::perms(0600));
    fs::create_symlink(from, folder.Path("link"));
    EXPECT_FALSE(CopyFileReplacing(from, folder.Path("link")));
    EXPECT_FALSE(CopyFileReplacing(folder.Path("absent"), to));
    {
        const FileSizeLimit diskIsFull(50'000);
        EXPECT_FALSE(CopyFileReplacing(from, to));
    }
    EXPECT_EQ(TemporaryFolder::Read(to), "old");
    EXPECT_TRUE(CopyFileReplacing(from, to));
    EXPECT_EQ(TemporaryFolder::Read(to), TemporaryFolder::Read(from));
    EXPECT_EQ(fs::status(to).permissions(), fs::perms(0600));
    EXPECT_EQ(CountFiles(folder), 3);
}

} // namespace
