#include "platform/FileReplacement.h"

#include "platform/RegularFile.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr int kMany = 100; // the last of so many have a hidden name

/// @param beginning  of the targets' names, which end in a number from 0
std::vector<std::unique_ptr<FileReplacement>> Make(int count, const std::string& beginning,
                                                   const std::string& source,
                                                   Lasting lasting = Lasting::Session) {
    std::vector<std::unique_ptr<FileReplacement>> made;
    for (int i = 0; i < count; ++i) {
        const std::string target = beginning + std::to_string(i);
        made.push_back(std::make_unique<FileReplacement>(target, source, lasting));
    }
    return made;
}

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
    const std::vector<std::unique_ptr<FileReplacement>> replacements =
        Make(kMany, folder.Path("new"), precious);
    for (const auto* replacement : {&replacements.front(), &replacements.back()}) {
        EXPECT_EQ(fs::status((*replacement)->GetPath()).permissions(), fs::perms(0600));
    }
    // Nor does a writer follow a link that somebody puts there before it opens the file.
    const std::string& path = replacements.back()->GetHiddenPath();
    fs::remove(path);
    fs::create_symlink(precious, path);
    EXPECT_EQ(OpenForWriting(path.c_str()), nullptr);
    EXPECT_EQ(TemporaryFolder::Read(precious), "precious");
}

TEST(FileReplacement, IsGoneWithItsProcessAndHoldsFewDescriptorsHoweverManyThereAre) {
    const TemporaryFolder folder;
    const std::string target = folder.Write("0", "old");
    const auto countIn = [](const std::string& path) {
        return std::distance(fs::directory_iterator(path), {});
    };
    if (fork() == 0) {
        const FileReplacement replacement(target, target, Lasting::ForGood);
        std::ofstream(replacement.GetPath()) << "new";
        _exit(countIn(folder.Path("")) == 1 ? 0 : 1);
    }
    int status = -1;
    EXPECT_TRUE(wait(&status) > 0 && status == 0);
    EXPECT_EQ(countIn(folder.Path("")), 1);

    const auto descriptors = countIn("/proc/self/fd");
    const auto replacements = Make(kMany, folder.Path(""), target, Lasting::ForGood);
    EXPECT_LE(countIn("/proc/self/fd"), descriptors + 70);
    EXPECT_FALSE(FolderHold::Alone(folder.Path("")).IsHeld());
    for (const auto& replacement : replacements) {
        std::ofstream(replacement->GetPath()) << "new";
        EXPECT_TRUE(replacement->Commit());
    }
    EXPECT_EQ(countIn(folder.Path("")), kMany);
    EXPECT_EQ(TemporaryFolder::Read(target) + TemporaryFolder::Read(folder.Path("99")), "newnew");
    EXPECT_EQ(countIn("/proc/self/fd"), descriptors);
    EXPECT_TRUE(FolderHold::Alone(folder.Path("")).IsHeld());
}

TEST(FileReplacement, RefusesTargetsThatNoFileCanReplace) {
    for (const std::string target : {"/tmp/", "/no/such/file", "/dev/full", ""}) {
        const FileReplacement replacement(target, target);
        EXPECT_TRUE(replacement.GetPath().empty() && replacement.GetError()) << target;
    }
}

} // namespace
