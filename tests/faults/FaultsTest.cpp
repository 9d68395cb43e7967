#include "tests/adaptor/RecordingDelegate.h"
#include "tests/cli/CliTest.h"
#include "tests/support/AlertRecorder.h"
#include "tests/support/Mp3Builder.h"

#include <csignal>
#include <linux/capability.h>
#include <linux/securebits.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/syscall.h>

// The environment is set while there is one thread, and no commands are run but our own.
// NOLINTBEGIN(concurrency-mt-unsafe, bugprone-command-processor)

namespace {

namespace fs = std::filesystem;

/// Whether this process may mount what no other one sees. If not, a process that may runs the test
/// instead; where the system allows nobody that, the test is skipped.
bool IsInNamespace() {
    const bool isIn = std::getenv("KLIPRA_IN_NAMESPACE") != nullptr;
    if (!isIn && std::system("unshare -rm true") != 0) {
        [] { GTEST_SKIP() << "nothing can be mounted here"; }();
    } else if (!isIn) {
        const auto& test = *testing::UnitTest::GetInstance()->current_test_info();
        const std::string program = fs::read_symlink("/proc/self/exe").string();
        const std::string command = "KLIPRA_IN_NAMESPACE=1 unshare -rm " + program +
                                    " --gtest_filter=" + test.test_suite_name() + "." + test.name();
        EXPECT_EQ(std::system(command.c_str()), 0);
    }
    return isIn;
}

/// Mounts a small disk of memory on a folder, or with MS_REMOUNT changes it.
void MountDisk(const std::string& folder, const char* options, unsigned long flags = 0) {
    ASSERT_EQ(mount("none", folder.c_str(), "tmpfs", flags, options), 0) << folder;
}

/// Takes permissions away; from now on they bind this process, and those that it starts, as root
/// too.
void Forbid(const std::string& path, fs::perms left) {
    prctl(PR_SET_SECUREBITS, SECBIT_NOROOT);
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    const __user_cap_data_struct none[2] = {};
    ASSERT_EQ(syscall(SYS_capset, &header, none), 0);
    fs::permissions(path, left);
}

/// What may happen to a disk or a file.
using Fault = void (*)(const std::string& path);

const std::string kSaveError = "保存できませんでした。";

void SaveAndEditOnDisks(Fault fault) {
    const std::string disk = "/mnt";
    AlertRecorder person;
    OpenedFile file(SilentWav(10));
    const std::string opened = TemporaryFolder::Read(file.path);
    const auto countSuccesses = [&](const std::string& answer) {
        person.answer = answer;
        file.adaptor.cutPositions = {0, 80'000};
        file.adaptor.SaveRange();
        std::string saved;
        return file.adaptor.Save(saved) + file.adaptor.Cut(true);
    };
    MountDisk(disk, "size=1m");
    MountDisk("/tmp", "size=1m");
    const std::string old = disk + "/old.wav";
    std::ofstream(old) << "old";
    fault(disk);
    fault("/tmp");
    for (const std::string& answer : {old, disk + "/new.wav", disk + "/gone/new.wav"}) {
        EXPECT_EQ(countSuccesses(answer), 0);
    }
    EXPECT_EQ(person.texts.size(), 9 * kSaveError.size()) << person.texts;
    EXPECT_EQ(file.adaptor.histories.size(), 1U);
    EXPECT_TRUE(fs::is_empty("/tmp"));
    EXPECT_EQ(TemporaryFolder::Read(old), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(disk), {}), 1);
    EXPECT_TRUE(TemporaryFolder::Read(file.path) == opened);
    for (const char* mended : {disk.c_str(), "/tmp"}) {
        mount("none", mended, "tmpfs", MS_REMOUNT, "size=1m");
        fs::permissions(mended, fs::perms(0755));
    }
    EXPECT_EQ(countSuccesses(old), 2);
    EXPECT_TRUE(TemporaryFolder::Read(old) == opened);
    EXPECT_EQ(fs::file_size(file.adaptor.histories[1].path), 80'044U);
}

TEST(AdaptorFaults, OfDisksLeaveTheHistoryAndAllFilesAsTheyWere) {
    const Fault faults[] = {
        [](const std::string& disk) { MountDisk(disk, "size=64k", MS_REMOUNT); },
        [](const std::string& disk) { MountDisk(disk, "", MS_REMOUNT | MS_RDONLY); },
        [](const std::string& disk) { Forbid(disk, fs::perms(0555)); },
    };
    setenv("TMPDIR", "/var/tmp", 1); // not where the edits are
    for (int i = 0; i < 3 && IsInNamespace(); ++i) {
        SCOPED_TRACE(i);
        SaveAndEditOnDisks(faults[i]);
    }
}

/// The fault happens while the file is scanned and played; later the file is as it was.
void WorkWithFile(Fault fault, FormatType format, const std::string& bytes) {
    AlertRecorder person;
    OpenedFile file(bytes, 1000, format);
    KlipraMac& adaptor = file.adaptor;
    adaptor.PlayStart();
    fault(file.path);
    const std::string left = TemporaryFolder::Read(file.path);
    adaptor.SetCurrentPosition(adaptor.length / 4 * 3);
    file.delegate.AwaitScan();
    adaptor.SearchSceanChange();
    std::string saved;
    person.answer = file.folder.Path("saved");
    EXPECT_EQ(adaptor.Save(saved), !left.empty());
    adaptor.cutPositions = {adaptor.length / 8, adaptor.length / 4};
    EXPECT_EQ(adaptor.Cut(true), !left.empty());
    EXPECT_EQ(person.texts.ends_with(kSaveError), left.empty()) << person.texts;
    EXPECT_TRUE(TemporaryFolder::Read(person.answer) == left);
    EXPECT_TRUE(TemporaryFolder::Read(file.path) == left);

    fs::remove(file.path);
    file.folder.Write("a song.wav", bytes);
    EXPECT_TRUE(adaptor.LoadPlayFile(1));
    adaptor.cutPositions = {adaptor.length / 2, adaptor.length / 4 * 3};
    EXPECT_TRUE(adaptor.Cut(true) && adaptor.Save(saved));
    EXPECT_LT(fs::file_size(saved), bytes.size() / 3);
}

TEST(AdaptorFaults, OfAFileInUseEndInAMessage) {
    const Fault faults[] = {
        [](const std::string& path) { fs::remove(path); },
        [](const std::string& path) { Forbid(path, fs::perms::none); },
        [](const std::string& path) { fs::resize_file(path, fs::file_size(path) / 2); },
    };
    for (int i = 0; i < 3 && IsInNamespace(); ++i) {
        SCOPED_TRACE(i);
        WorkWithFile(faults[i], FormatType::WAV, SilentWav(600));
        WorkWithFile(faults[i], FormatType::MP3, Mp3Builder().Frames(10'000).Bytes());
    }
}

// The device is a file on a disk that is too small for it: SDL gives it up at the first write that
// fails.
TEST(AdaptorFaults, ADeviceThatIsLostIsToldAndLetsPlaybackGoOnInSilence) {
    if (!IsInNamespace()) {
        return;
    }
    const TemporaryFolder folder;
    const std::string disk = folder.Path("disk");
    fs::create_directory(disk);
    MountDisk(disk, "size=256k");
    setenv("SDL_AUDIODRIVER", "disk", 1);
    setenv("SDL_DISKAUDIOFILE", (disk + "/played").c_str(), 1);
    const std::string bytes = WavBuilder{.samples = WavBuilder::Pattern(500'000)}.Bytes();
    OpenedFile file(bytes, 0, FormatType::WAV, KlipraMac::Sound::Audible);
    EXPECT_TRUE(KlipraMac::HasOutput());
    const auto playFrom = [&](unsigned long long position) {
        file.adaptor.SetCurrentPosition(position);
        for (file.adaptor.PlayStart(); file.adaptor.playing;) {
            usleep(10'000);
        }
        EXPECT_EQ(file.adaptor.GetCurrentPosition(), 500'000U);
    };
    playFrom(0);
    EXPECT_EQ(fs::space(disk).available, 0U);
    EXPECT_FALSE(KlipraMac::HasOutput());
    umount2(disk.c_str(), MNT_DETACH);
    fs::remove(disk);
    playFrom(400'000); // no device can be opened now
    EXPECT_FALSE(KlipraMac::HasOutput());
    fs::create_directory(disk);
    playFrom(400'000); // and now one can again
    EXPECT_TRUE(KlipraMac::HasOutput());
    EXPECT_TRUE(TemporaryFolder::Read(disk + "/played").find(bytes.substr(400'044)) !=
                std::string::npos);
}

TEST(AdaptorFaults, KilledWhileItSavesItLeavesAWholeFile) {
    const TemporaryFolder folder;
    AlertRecorder person;
    person.answer = folder.Write("old.wav", "old");
    const std::string bytes = SilentWav(1000);
    std::string saved;
    for (unsigned int i = 0; i < 10; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            setenv("TMPDIR", folder.Path("").c_str(), 1);
            OpenedFile file(bytes);
            for (file.adaptor.cutPositions = {0, 8'000'000};; file.adaptor.SaveRange()) {
                file.adaptor.Save(saved);
            }
        }
        usleep(100'000 + 34'567 * i);
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const std::string now = TemporaryFolder::Read(person.answer);
        EXPECT_TRUE(now == "old" || now == bytes || now.size() == 8'000'044) << now.size();
    }
    EXPECT_TRUE(TemporaryFolder::Read(person.answer) != "old") << "none came to save";
    EXPECT_TRUE(OpenedFile(bytes).adaptor.Save(saved));
    EXPECT_TRUE(TemporaryFolder::Read(person.answer) == bytes);
}

TEST(ProgramFaults, ToldToEndWhileItScansItLeavesNothing) {
    constexpr std::uint32_t kBytes = 4'000'000'000; // of holes, which take no room
    const TemporaryFolder folder;
    const std::string path = folder.Write("long.wav", WavBuilder{.dataSize = kBytes}.Header());
    fs::resize_file(path, kBytes);
    const auto written = fs::last_write_time(path);
    // It is told when it has read 100 MB, and has something to delete.
    const std::string script =
        "QT_QPA_PLATFORM=offscreen SDL_AUDIODRIVER=dummy " KLIPRA_PROGRAM " " + path +
        " & edit=/tmp/orvane.Klipra-$!-1.wav; echo >$edit; "
        "while grep -q 'rchar: .\\{,8\\}$' /proc/$!/io; do :; done; "
        "kill $!; wait $! && ! test -e $edit";
    EXPECT_EQ(std::system(script.c_str()), 0);
    EXPECT_EQ(fs::last_write_time(path), written);
}

using CommandLineFaults = CliTest;

TEST_F(CommandLineFaults, OfDisksAreNamed) {
    if (!IsInNamespace()) {
        return;
    }
    const std::string disk = m_folder.Path("disk");
    fs::create_directory(disk);
    MountDisk(disk, "size=300k");
    m_folder.Write("disk/old-2.wav", "old");
    ExpectFailure(1, "split a.WAV 5 disk/old-%.wav", "write the output: No space left on device\n");
    Done("extract a.WAV 0 5 disk/old-2.wav");
    MountDisk(disk, "", MS_REMOUNT | MS_RDONLY);
    ExpectFailure(1, "cut a.WAV 0 5 disk/old-2.wav", "'disk/old-2.wav': Read-only file system\n");
    umount2(disk.c_str(), MNT_DETACH);
    Forbid(m_folder.Path("a.WAV"), fs::perms::none);
    ExpectFailure(1, "cut a.WAV 0 5 new.wav", "'a.WAV': Permission denied\n");
    ExpectFailure(1, "wave a.WAV new.png", "'a.WAV': Permission denied\n");
}

// The kernel answers a call of the program as it does when a disk breaks.
TEST_F(CommandLineFaults, OfABrokenDiskLeaveTheOldFiles) {
    if (std::system("strace -qq -o /dev/null true") != 0) {
        GTEST_SKIP() << "nothing can be traced here";
    }
    m_folder.Write("old-1.wav", "old");
    m_folder.Write("old-2.wav", "old");
    Mp3Builder().Frames(1000).WriteTo(m_folder.Path("b.mp3"));
    const std::string cases[][3] = {
        {"write:error=EIO:when=3", "extract a.WAV 1 90 old-1.wav", "'a.WAV': cannot write"},
        {"/^rename:error=EIO:when=1", "cut a.WAV 1 2 old-1.wav", "'old-1.wav': Input/output"},
        {"/^rename:error=EIO:when=2", "split a.WAV 50 old-%.wav", "'old-2.wav': Input/output"},
        {"read:error=EIO:when=3 -P a.WAV", "cut a.WAV 1 2 old-1.wav", "'a.WAV': cannot read"},
        {"read:error=EIO:when=3 -P b.mp3", "cut b.mp3 1 2 old-1.wav", "'b.mp3': Can't read"},
    };
    for (const auto& [fault, command, message] : cases) {
        // The leak sanitizer and strace cannot both trace a process.
        const std::string strace =
            "env ASAN_OPTIONS=detect_leaks=0 strace --quiet=all -f -o /dev/null -e inject=";
        setenv("KLIPRA_UNDER", (strace + fault).c_str(), 1);
        ExpectFailure(1, command, message);
    }
}

} // namespace

// NOLINTEND(concurrency-mt-unsafe, bugprone-command-processor)
