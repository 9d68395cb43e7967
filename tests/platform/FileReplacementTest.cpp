#include "platform/FileReplacement.h"

#include "platform/RegularFile.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

namespace fs = std::filesystem;

TEST(FileReplacement, TakesTheTargetsPlaceAndPermissionsOnCommitOnly) {
    const TemporaryFolder folder;
    const std::string target = folder.Write("target", "old");
    fs::permissions(target, fs::perms(0666)); // which the mask would take away from a new file
    for (const bool isAbandoned : {true, false}) {
        FileReplacement replacement(target, target);
        std::ofstream(replacement.GetPath()) << "new";
        EXPECT_EQ(TemporaryFolder::Read(target), "old");
        EXPECT_TRUE(isAbandoned || replacement.Commit());
    }
    EXPECT_EQ(TemporaryFolder::Read(target), "new");
    EXPECT_EQ(fs::status(target).permissions(), fs::perms(0666));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.Path("")), {}), 1);
}

TEST(FileReplacement, OfALinkFollowsItNotAndOfAPrivateFileIsPrivate) {
    const TemporaryFolder folder;
    const std::string precious = folder.Write("precious", "precious");
    const std::string link = folder.Path("link");
    fs::create_symlink(precious, link);
    EXPECT_TRUE(FileReplacement(link, precious).Commit());
    EXPECT_EQ(TemporaryFolder::Read(precious), "precious");
    EXPECT_FALSE(fs::is_symlink(link));
    fs::permissions(precious, fs::perms(0400));
    const FileReplacement replacement(folder.Path("new"), precious);
    EXPECT_EQ(fs::status(replacement.GetPath()).permissions(), fs::perms(0600));
    // Nor does a writer follow a link that somebody puts there before it opens the file.
    fs::remove(replacement.GetPath());
    fs::create_symlink(precious, replacement.GetPath());
    EXPECT_EQ(OpenForWriting(replacement.GetPath().c_str()), nullptr);
    EXPECT_EQ(TemporaryFolder::Read(precious), "precious");
}

TEST(FileReplacement, RefusesTargetsThatNoFileCanReplace) {
    for (const std::string target : {"/tmp/", "/no/such/file", "/dev/full", ""}) {
        const FileReplacement replacement(target, target);
        EXPECT_TRUE(replacement.GetPath().empty() && replacement.GetError()) << target;
    }
}

} // namespace
