#include "platform/FileReplacement.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;

std::ptrdiff_t CountFiles(const std::string& folder) {
    return std::distance(fs::directory_iterator(folder), {});
}

TEST(FileReplacement, TakesTheTargetsPlaceAndPermissionsOnCommitOnly) {
    const TemporaryFolder folder;
    const std::string target = folder.Write("target", "old");
    chmod(target.c_str(), 0640);
    for (const bool isAbandoned : {true, false}) {
        FileReplacement replacement(target, target);
        std::ofstream(replacement.GetPath()) << "new";
        EXPECT_EQ(TemporaryFolder::Read(target), "old");
        EXPECT_TRUE(isAbandoned || replacement.Commit());
    }
    EXPECT_EQ(TemporaryFolder::Read(target), "new");
    EXPECT_EQ(fs::status(target).permissions(), fs::perms(0640));
    EXPECT_EQ(CountFiles(folder.Path("")), 1);
}

TEST(FileReplacement, OfALinkFollowsItNotAndOfAPrivateFileIsPrivate) {
    const TemporaryFolder folder;
    const std::string precious = folder.Write("precious", "precious");
    const std::string link = folder.Path("link");
    fs::create_symlink(precious, link);
    EXPECT_TRUE(FileReplacement(link, precious).Commit());
    EXPECT_EQ(TemporaryFolder::Read(precious), "precious");
    EXPECT_FALSE(fs::is_symlink(link));
    chmod(precious.c_str(), 0600);
    const FileReplacement replacement(folder.Path("new"), precious);
    EXPECT_EQ(fs::status(replacement.GetPath()).permissions(), fs::perms(0600));
}

TEST(FileReplacement, RefusesTargetsThatNoFileCanReplace) {
    const TemporaryFolder folder;
    const std::string fifo = folder.Path("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    for (const std::string& target :
         {folder.Path(""), folder.Path("no/such/file"), fifo, std::string()}) {
        const FileReplacement replacement(target, target);
        EXPECT_TRUE(replacement.GetPath().empty()) << target;
        EXPECT_TRUE(replacement.GetError()) << target;
    }
    EXPECT_EQ(CountFiles(folder.Path("")), 1);
}

} // namespace
