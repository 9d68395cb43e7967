#include "tests/adaptor/RecordingDelegate.h"
#include "tests/cli/CliTest.h"
#include "tests/support/AlertRecorder.h"
#include "tests/support/Mp3Builder.h"

#include <csignal>
#include <linux/capability.h>
#include <sys/mount.h>
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

/// Whether permissions bind this process, and the threads that it starts, as root too.
void BindByPermissions(bool bind) {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct sets[2] = {};
    syscall(SYS_capget, &header, sets);
    for (__user_cap_data_struct& set : sets) {
        set.effective = bind ? 0 : set.permitted;
    }
    ASSERT_EQ(syscall(SYS_capset, &header, sets), 0);
}

/// Mounts or changes the disks of what is saved and of the edits.
void MountDisks(const char* options, unsigned long flags, fs::perms left = fs::perms(0755)) {
    for (const char* disk : {"/mnt", "/tmp"}) {
        MountDisk(disk, options, flags);
        std::error_code isReadOnly;
        fs::permissions(disk, left, isReadOnly);
    }
}

/// What may happen to the disks or to the opened file.
using Fault = void (*)(const std::string& path);

/// The fault happens while the file is scanned and played; later all is as it was.
void WorkWithFile(Fault fault, FormatType format, const std::string& bytes) {
    MountDisks("size=30m", 0);
    const std::string old = "/mnt/old";
    std::ofstream(old) << "old";
    AlertRecorder person;
    OpenedFile file(bytes, 1000, format);
    KlipraMac& adaptor = file.adaptor;
    const auto countErrors = [&](const std::string& answer) {
        const auto wasTold = [&] {
            return std::exchange(person.texts, "").ends_with("保存できませんでした。") ? 1 : 0;
        };
        person.answer = answer;
        adaptor.cutPositions = {adaptor.length / 8, adaptor.length / 8 + adaptor.length / 64};
        adaptor.SaveRange();
        int errors = wasTold();
        errors += adaptor.Save(person.answer) ? 0 : wasTold();
        return errors + (adaptor.Cut(true) ? 0 : wasTold());
    };
    adaptor.PlayStart();
    fault(file.path);
    BindByPermissions(true);
    const std::string left = TemporaryFolder::Read(file.path);
    const bool isShrunk = left.size() == bytes.size() / 2; // and can be saved and cut all the same
    adaptor.SetCurrentPosition(adaptor.length / 4 * 3);
    file.delegate.AwaitScan();
    adaptor.SearchSceanChange();
    EXPECT_EQ(countErrors(old), isShrunk ? 0 : 3);
    EXPECT_TRUE(TemporaryFolder::Read(old) == (isShrunk ? left : "old"));
    EXPECT_EQ(countErrors("/mnt/gone/new"), isShrunk ? 2 : 3);
    EXPECT_EQ(countErrors("/mnt/new"), isShrunk ? 0 : 3);
    EXPECT_EQ(std::distance(fs::directory_iterator("/mnt"), {}), isShrunk ? 2 : 1);
    EXPECT_EQ(std::distance(fs::directory_iterator("/tmp"), {}), isShrunk ? 3 : 0);
    EXPECT_EQ(adaptor.histories.size(), isShrunk ? 4U : 1U);
    EXPECT_TRUE(TemporaryFolder::Read(file.path) == left);

    BindByPermissions(false);
    MountDisks("size=30m", MS_REMOUNT);
    fs::remove(file.path);
    file.folder.Write("a song.wav", bytes);
    EXPECT_TRUE(adaptor.LoadPlayFile(1));
    EXPECT_EQ(countErrors(old), 0);
    EXPECT_TRUE(TemporaryFolder::Read(old) == bytes);
    EXPECT_LT(fs::file_size(adaptor.histories.back().path), bytes.size() / 60);
}

TEST(AdaptorFaults, OfDisksAndOfAFileInUseEndInAMessage) {
    const Fault faults[] = {
        [](const std::string&) { MountDisks("size=16k", MS_REMOUNT); },
        [](const std::string&) { MountDisks("", MS_REMOUNT | MS_RDONLY); },
        [](const std::string&) { MountDisks("", MS_REMOUNT, fs::perms(0555)); },
        [](const std::string& path) { fs::permissions(path, fs::perms::none); },
        [](const std::string& path) { fs::remove(path); },
        [](const std::string& path) { fs::resize_file(path, fs::file_size(path) / 2); },
    };
    setenv("TMPDIR", "/var/tmp", 1); // not where the edits are
    for (std::size_t i = 0; i < std::size(faults) && IsInNamespace(); ++i) {
        SCOPED_TRACE(i);
        WorkWithFile(faults[i], FormatType::WAV, SilentWav(600));
        WorkWithFile(faults[i], FormatType::MP3, Mp3Builder().Frames(10'000).Bytes());
    }
}

// The device is a file on a disk that is too small for it: SDL gives it up at the first write that
// fails.
TEST(AdaptorFaults, ADeviceThatIsLostIsToldAndPlaybackGoesOnInSilenceUntilThereIsOne) {
    if (!IsInNamespace()) {
        return;
    }
    const TemporaryFolder folder;
    const std::string disk = folder.Path("disk");
    fs::create_directory(disk);
    MountDisk(disk, "size=256k");
    setenv("SDL_AUDIODRIVER", "disk", 1);
    setenv("SDL_DISKAUDIOFILE", (disk + "/played").c_str(), 1);
    const std::string bytes = WavBuilder{.samples = WavBuilder::Pattern(1'500'000)}.Bytes();
    OpenedFile file(bytes, 0, FormatType::WAV, KlipraMac::Sound::Audible);
    EXPECT_TRUE(KlipraMac::HasOutput());
    const auto awaitOutput = [&](bool isThere) {
        while (file.adaptor.playing && KlipraMac::HasOutput() != isThere) {
            usleep(1000);
        }
        EXPECT_TRUE(file.adaptor.playing);
    };
    file.adaptor.PlayStart();
    while (file.adaptor.playing && fs::space(disk).available != 0) {
        usleep(1000);
    }
    umount2(disk.c_str(), MNT_DETACH);
    fs::remove(disk);
    awaitOutput(false); // and none can be opened now
    const auto lost = file.adaptor.GetCurrentPosition();
    fs::create_directory(disk);
    awaitOutput(true); // now one can again
    EXPECT_GT(file.adaptor.GetCurrentPosition(), lost);
    file.adaptor.SetCurrentPosition(1'400'000);
    while (file.adaptor.playing) {
        usleep(10'000);
    }
    EXPECT_EQ(file.adaptor.GetCurrentPosition(), 1'500'000U);
    EXPECT_TRUE(KlipraMac::HasOutput());
    EXPECT_TRUE(TemporaryFolder::Read(disk + "/played").find(bytes.substr(1'400'044)) !=
                std::string::npos);
}

TEST(AdaptorFaults, KilledWhileItSavesItLeavesAWholeFile) {
    const TemporaryFolder folder;
    AlertRecorder person;
    person.answer = folder.Write("old.wav", "old");
    const std::string bytes = SilentWav(1000);
    std::string now;
    for (unsigned int i = 0; i < 10; ++i) {
        int hasSaved[2];
        ASSERT_EQ(pipe(hasSaved), 0);
        const pid_t child = fork();
        if (child == 0) {
            setenv("TMPDIR", folder.Path("").c_str(), 1);
            OpenedFile file(bytes);
            for (file.adaptor.cutPositions = {0, 8'000'000};; file.adaptor.SaveRange()) {
                file.adaptor.Save(now);
                EXPECT_EQ(write(hasSaved[1], "", 1), 1);
            }
        }
        char byte = 1;
        EXPECT_EQ(read(hasSaved[0], &byte, 1), 1);
        close(hasSaved[0]);
        close(hasSaved[1]);
        usleep(3'456 * i); // somewhere in the next saves
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        now = TemporaryFolder::Read(person.answer);
        EXPECT_TRUE(now == bytes || now.size() == 8'000'044) << now.size();
    }
}

TEST(ProgramFaults, ToldToEndWhileItScansItLeavesNothing) {
    constexpr std::uint32_t kBytes = 4'000'000'000; // of holes, which take no room
    const TemporaryFolder folder;
    const std::string path = folder.Write("long.wav", WavBuilder{.dataSize = kBytes}.Header());
    fs::resize_file(path, kBytes);
    // It is told when it has read 100 MB, and has something to delete.
    const std::string script =
        "XDG_STATE_HOME=" + folder.Path("state") +
        " QT_QPA_PLATFORM=offscreen SDL_AUDIODRIVER=dummy " KLIPRA_PROGRAM " " + path +
        " & edit=/tmp/orvane.Klipra-$!-1.wav; echo >$edit; "
        "while grep -q 'rchar: .\\{,8\\}$' /proc/$!/io; do :; done; "
        "kill $!; wait $! && ! test -e $edit";
    EXPECT_EQ(std::system(script.c_str()), 0);
}

/// A file system in a file, which can be copied while it is in use, as a power cut would leave it.
class DiskImage {
public:
    explicit DiskImage(std::string path) : m_path(std::move(path)), m_folder(m_path + ".mounted") {
        fs::create_directory(m_folder);
        m_isMounted = Run("mount -o loop " + m_path + " " + m_folder);
    }
    DiskImage(const DiskImage&) = delete;
    DiskImage& operator=(const DiskImage&) = delete;
    ~DiskImage() {
        if (m_isMounted) {
            Run("umount " + m_folder);
        }
    }
    bool IsMounted() const { return m_isMounted; }
    std::string Path(const std::string& name) const { return m_folder + "/" + name; }

    /// What a file holds after a power cut now.
    std::string ReadAfterPowerCut(const std::string& name) const {
        const std::string copy = m_path + ".copy";
        fs::copy_file(m_path, copy, fs::copy_options::overwrite_existing);
        return TemporaryFolder::Read(DiskImage(copy).Path(name));
    }

    static bool Run(const std::string& command) {
        return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
    }

private:
    const std::string m_path;
    const std::string m_folder;
    bool m_isMounted = false;
};

TEST(PowerCut, BehindAnySaveFindsItsFileWhole) {
    const TemporaryFolder folder;
    const std::string image = folder.Path("image");
    if (!DiskImage::Run("truncate -s 64M " + image) || !DiskImage::Run("mkfs.ext4 -q " + image) ||
        !DiskImage(image).IsMounted()) {
        GTEST_SKIP() << "no image of a disk can be mounted here";
    }
    const DiskImage disk(image);
    const std::string cli = std::string(KLIPRA_CLI).substr(std::string("$KLIPRA_UNDER").size());
    AlertRecorder person;
    OpenedFile file(SilentWav(200));
    file.adaptor.cutPositions = {0, 160'000};
    for (const std::string old : {"", "old"}) {
        const auto expectWhole = [&](const std::string& name) {
            const std::string bytes = TemporaryFolder::Read(disk.Path(name));
            EXPECT_TRUE(bytes.size() > 100'000 && disk.ReadAfterPowerCut(name) == bytes) << name;
        };
        person.answer = disk.Path(old + "saved.wav");
        std::string path;
        EXPECT_TRUE(file.adaptor.Save(path));
        expectWhole(old + "saved.wav");
        person.answer = disk.Path(old + "range.wav");
        file.adaptor.SaveRange();
        expectWhole(old + "range.wav");
        EXPECT_TRUE(DiskImage::Run(cli + " split '" + file.path + "' 10 100 " +
                                   disk.Path(old + "piece-%.wav")));
        expectWhole(old + "piece-1.wav");
        expectWhole(old + "piece-3.wav");
        for (const char* name : {"oldsaved.wav", "oldrange.wav", "oldpiece-1.wav"}) {
            std::ofstream(disk.Path(name)) << "old"; // what the second round replaces
        }
        sync();
    }
}

class CommandLineFaults : public CliTest {
protected:
    void TearDown() override { unsetenv("KLIPRA_UNDER"); }

    /// If not, the test is skipped.
    static bool CanTrace() {
        const bool can = std::system("strace -qq -o /dev/null true") == 0;
        if (!can) {
            [] { GTEST_SKIP() << "nothing can be traced here"; }();
        }
        return can;
    }

    // Before a fault and the program; the leak sanitizer and strace cannot both trace a process.
    static constexpr const char* kInject =
        "env ASAN_OPTIONS=detect_leaks=0 strace --quiet=all -f -o /dev/null -e inject=";
};

// The kernel answers a call of the program as it does when a disk breaks, fills or refuses.
TEST_F(CommandLineFaults, OfDisksAreNamedAndLeaveTheOldFiles) {
    if (!CanTrace()) {
        return;
    }
    m_folder.Write("old-1.wav", "old");
    m_folder.Write("old-2.wav", "old");
    m_folder.Write("b.mp3", Mp3Builder().Frames(1000).Bytes());
    const std::string cases[][3] = {
#if !defined(__SANITIZE_ADDRESS__) // which writes too, and does not stand a failure
        {"write:error=EIO:when=5", "extract a.WAV 1 90 old-1.wav",
         "'old-1.wav': cannot be written"},
        {"write:error=ENOSPC:when=5", "extract a.WAV 1 90 old-1.wav",
         "'old-1.wav': the disk is full"},
        {"write:error=EIO:when=1", "wave a.WAV new.png",
         "'new.png': cannot be written"}, // to close
#endif
        {"/^rename:error=EIO:when=1", "cut a.WAV 1 2 old-1.wav",
         "'old-1.wav': cannot be written: Input/output"},
        {"/^rename:error=EIO:when=2", "split a.WAV 50 old-%.wav",
         "'old-2.wav': cannot be written: Input/output"},
        {"fsync:error=EIO", "extract a.WAV 1 90 old-1.wav", "'old-1.wav': cannot be written"},
        {"syncfs:error=EIO", "split a.WAV 50 old-%.wav", "cannot be written: Input/output"},
        {"/^faccessat:error=EROFS", "cut a.WAV 1 2 old-2.wav",
         "'old-2.wav': Read-only file system"},
        {"read:error=EIO:when=3 -P a.WAV", "cut a.WAV 1 2 old-1.wav", "'a.WAV': cannot be read"},
        {"read:error=EIO:when=3 -P b.mp3", "cut b.mp3 1 2 new.mp3", "'b.mp3': cannot be read"},
        {"openat:error=EACCES -P a.WAV", "cut a.WAV 1 2 new.wav", "'a.WAV': Permission denied"},
        {"openat:error=EACCES -P a.WAV", "wave a.WAV new.png", "'a.WAV': Permission denied"},
        {"openat:error=EMFILE:when=3 -P a.WAV", "scenes a.WAV", "'a.WAV': Too many open files"},
        {"/^clone:error=EAGAIN", "wave a.WAV new.png", "the system has no more threads"},
        {"/^p?read:error=EIO:when=20+ -P a.WAV", "scenes a.WAV", "'a.WAV': Input/output"},
        {"/^p?read:error=EIO:when=30 -P a.WAV", "wave a.WAV new.png", " s on (byte "},
    };
    for (const auto& [fault, command, message] : cases) {
        setenv("KLIPRA_UNDER", (kInject + fault).c_str(), 1);
        ExpectFailure(1, command, message);
    }
}

// Those that come before the first piece takes its place end the program; then it goes on.
TEST_F(CommandLineFaults, SignalsLeaveNothingOrAllPieces) {
    if (!CanTrace()) {
        return;
    }
    constexpr std::size_t kPieces = 100; // more than are written without a name
    const auto before = Snapshot();
    const std::pair<const char*, int> cases[] = {
        {"openat:signal=QUIT:when=90", SIGQUIT}, {"write:signal=INT:when=1", SIGINT},
        {"write:signal=HUP:when=250", SIGHUP},   {"write:signal=PIPE:when=100", SIGPIPE},
        {"syncfs:signal=TERM", SIGTERM},         {"/^rename:signal=TERM:when=1", 0},
        {"/^rename:signal=INT:when=30", 0}};
    for (const auto& [fault, signal] : cases) {
        SCOPED_TRACE(fault);
        const std::string split = " klipra-cli split --every 1 a.WAV x%.wav";
        EXPECT_EQ(RunLine(std::string(kInject) + fault + split), signal == 0 ? 0 : 128 + signal);
        EXPECT_EQ(Snapshot().size(), before.size() + (signal == 0 ? kPieces : 0));
        RunLine("rm -f x*");
        EXPECT_TRUE(Snapshot() == before);
    }
}

} // namespace

// NOLINTEND(concurrency-mt-unsafe, bugprone-command-processor)
