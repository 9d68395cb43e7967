#include "audio/bass.h"
#include "tests/audio/Samples.h"
#include "tests/support/WavBuilder.h"

#include <atomic>
#include <cerrno>
#include <filesystem>

namespace {

/// A file on a disk that has gone bad at one place: what lies there cannot be read, what comes
/// before and behind it can.
class DamagedFile : public File {
public:
    explicit DamagedFile(const std::string& path) : File(OpenRegularFile(path.c_str())) {}

    ReadResult ReadAt(std::int64_t offset, void* to, std::size_t bytes) const override {
        const std::int64_t end = offset + static_cast<std::int64_t>(bytes);
        if (end <= m_begin || offset >= m_begin + 4096) {
            return File::ReadAt(offset, to, bytes);
        }
        ++m_tries;
        const auto before = static_cast<std::size_t>(std::max(m_begin - offset, std::int64_t{0}));
        return {File::ReadAt(offset, to, before).bytes, EIO};
    }

    std::atomic<std::int64_t> m_begin{INT64_MAX / 2};
    mutable std::atomic<int> m_tries{0};
};

class ReadingErrors : public testing::Test {
protected:
    static constexpr std::int64_t kDamage = 50 * 4096;

    const std::string mp3 = Clip("joint-stereo-44100.mp3", 20);
    const std::string wav = WavBuilder{.samples = WavBuilder::Pattern(1'000'000)}.Bytes();
    TemporaryFolder folder;
};

TEST_F(ReadingErrors, OfADamagedDiskIsTheFirstPlaceThatIsMissingAndAllElseIsHeard) {
    for (const auto& [bytes, threads] :
         {std::pair(mp3, 1U), std::pair(mp3, 3U), std::pair(wav, 1U)}) {
        SCOPED_TRACE(threads);
        const std::string path = folder.Write("a", bytes);
        const auto file = std::make_shared<DamagedFile>(path);
        const auto decoder = OpenDecoder(file, threads);
        const Samples whole = ReadOn(*decoder);
        EXPECT_FALSE(decoder->Failure());
        file->m_begin = kDamage;
        decoder->Seek(0);
        const Samples damaged = ReadOn(*decoder);
        ASSERT_TRUE(decoder->Failure());
        const auto [sampleFrame, cause] = *decoder->Failure();
        EXPECT_EQ(cause, (ReadError{kDamage, EIO}));
        const auto [missing, _] = std::mismatch(whole.begin(), whole.end(), damaged.begin());
        EXPECT_LE(std::abs(missing - whole.begin() - sampleFrame * 2), 2 * 1152);
        EXPECT_GE(missing - whole.begin(), sampleFrame * 2);
        EXPECT_TRUE(std::equal(damaged.end() - 100'000, damaged.end(), whole.end() - 100'000));
        EXPECT_LE(file->m_tries, 8);
    }
}

TEST_F(ReadingErrors, WhileAFileIsOpenedLeavesOutWhatIsDamagedAndIsNotKept) {
    const std::string path = folder.Write("a", mp3);
    const auto damaged = std::make_shared<DamagedFile>(path);
    damaged->m_begin = kDamage;
    const auto decoder = OpenDecoder(damaged, 1);
    const std::int64_t opened = decoder->Format().sampleFrames;
    EXPECT_TRUE(decoder->Failure());
    const Samples rest = ReadOn(*decoder);
    const auto failure = decoder->Failure();
    EXPECT_EQ(failure->cause, (ReadError{kDamage, EIO}));
    const Samples whole = DecodeFile(path); // as nobody has to do without
    const std::int64_t before = failure->sampleFrame * 2;
    EXPECT_TRUE(std::equal(rest.begin(), rest.begin() + before, whole.begin()));
    EXPECT_TRUE(std::equal(rest.end() - 100'000, rest.end(), whole.end() - 100'000));
    const auto page =
        4096.0 / 2.0 * static_cast<double>(whole.size()) / static_cast<double>(mp3.size());
    EXPECT_NEAR(static_cast<double>(std::ssize(whole)) / 2.0 - static_cast<double>(opened), page,
                3 * 1152);

    damaged->m_begin = 0;
    EXPECT_NE(OpenDecoder(damaged, 1), nullptr);
    EXPECT_EQ(damaged->Failures().First(), (ReadFailure{0, {0, EIO}}));
}

TEST_F(ReadingErrors, IsToldByEveryStreamOfTheFileThatWasOpenThen) {
    BASS_READFAILURE failure{};
    EXPECT_FALSE(BASS_ChannelGetReadFailure(0, &failure));
    const std::string promises = std::string(wav).replace(40, 4, "\xFF\xFF\xFF\x7F");
    for (const std::string& bytes : {mp3, wav, promises}) {
        const std::string path = folder.Write("a", bytes);
        const auto open = [&](DWORD flags) {
            return BASS_StreamCreateFile(FALSE, path.c_str(), 0, 0, flags);
        };
        const HSTREAM played = open(0);
        const HSTREAM scanned = open(BASS_STREAM_DECODE);
        const auto scan = [&] {
            float levels[2];
            while (BASS_ChannelGetLevelEx(scanned, levels, 1, BASS_LEVEL_STEREO)) {
            }
        };
        scan();
        EXPECT_FALSE(BASS_ChannelGetReadFailure(played, &failure));
        std::filesystem::resize_file(path, 300'000);
        BASS_ChannelSetPosition(scanned, 0, BASS_POS_BYTE);
        scan();
        BASS_StreamFree(scanned);
        ASSERT_TRUE(BASS_ChannelGetReadFailure(played, &failure));
        EXPECT_EQ(failure.error, 0U);
        EXPECT_EQ(failure.fileOffset, 300'000U);
        const double share = static_cast<double>(failure.position) /
                             static_cast<double>(BASS_ChannelGetLength(played, BASS_POS_BYTE));
        EXPECT_NEAR(share, 300'000.0 / static_cast<double>(bytes.size()), 0.01);
        const HSTREAM later = open(0); // is as long as the file is by now
        EXPECT_FALSE(BASS_ChannelGetReadFailure(later, &failure));
        BASS_StreamFree(later);
        BASS_StreamFree(played);
    }
}

TEST_F(ReadingErrors, OfOpeningIsToldToTheThreadThatTried) {
    BASS_READFAILURE failure{};
    const auto errorOf = [&](const std::string& path) {
        EXPECT_EQ(BASS_StreamCreateFile(FALSE, path.c_str(), 0, 0, 0), 0U);
        return BASS_GetOpenFailure(&failure) ? static_cast<int>(failure.error) : -1;
    };
    EXPECT_EQ(errorOf(folder.Path("none")), ENOENT);
    EXPECT_EQ(errorOf(folder.Path("")), EISDIR);
    EXPECT_EQ(errorOf(folder.Write("a", "no audio")), -1);
    EXPECT_EQ(errorOf(folder.Write("a", "")), -1);
    EXPECT_EQ(errorOf("/proc/self/mem"), EIO);
}

} // namespace
