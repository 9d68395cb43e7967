#include "cutting/CutFailure.h"

#include "cutting/CutMP3.h"
#include "cutting/CutProgress.h"
#include "cutting/CutWAV.h"
#include "tests/support/AlertRecorder.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/Mp3Builder.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <functional>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/// What holds for both cutters when they cannot do their work.
class CutFailures
    : public testing::TestWithParam<bool (*)(const char*, const char*, float, float, bool)> {
protected:
    void ExpectRefused(const std::string& source, const std::string& output,
                       const CutProblem& problem) {
        SCOPED_TRACE(source + " to " + output);
        EXPECT_FALSE(GetParam()(source.c_str(), output.c_str(), 0.0F, 1000.0F, true));
        EXPECT_EQ(CutFailure(), problem) << DescribeFailure(CutFailure());
        EXPECT_EQ(TemporaryFolder::Read(m_source), m_bytes);
        EXPECT_FALSE(fs::exists(m_output));
    }

    // So much that a cut of it takes a while; of a WAV a hole does.
    std::string LargeBytes() const {
        std::string bytes = m_bytes;
        for (int i = 0; GetParam() == CutMP3File && i < 40; ++i) {
            bytes += m_bytes.substr(417, 3000UL * 417);
        }
        return bytes;
    }

    TemporaryFolder m_folder;
    AlertRecorder m_alerts;
    std::string m_bytes = GetParam() == CutMP3File
                              ? Mp3Builder().Xing(15, 3000, 1).Lame().Frames(3000).Id3v1().Bytes()
                              : WavBuilder{.samples = WavBuilder::Pattern(1200000)}.Bytes();
    std::string m_source = m_folder.Write("source", m_bytes);
    std::string m_output = m_folder.Path("output");
};

TEST_P(CutFailures, SourcesThatAreNoFilesAndOutputsThatCannotBeCreated) {
    const std::string fifo = m_folder.Path("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    const CutReason notCut = GetParam() == CutMP3File ? CutReason::NoFrame : CutReason::NotWAV;
    const CutProblem problems[] = {
        {CutReason::SourceUnreadable, m_folder.Path("missing"), ENOENT},
        {CutReason::SourceUnreadable, m_folder.Path(""), EISDIR},
        {CutReason::SourceUnreadable, fifo, EINVAL},
        {CutReason::SourceUnreadable, "/dev/zero", EINVAL},
        {notCut, m_folder.Write("empty", "")},
    };
    for (const CutProblem& problem : problems) {
        ExpectRefused(problem.path, m_output, problem);
    }
    const std::string link = m_folder.Path("link");
    fs::create_symlink(m_source, link);
    for (const auto& [output, error] :
         {std::pair(m_folder.Path("no/such/folder"), ENOENT), {m_source, EEXIST}, {link, EEXIST}}) {
        ExpectRefused(m_source, output, {CutReason::OutputNotCreatable, output, error});
    }
}

TEST_P(CutFailures, ADiskThatIsFullAtAnyPoint) {
    for (const rlim_t limit : {0U, 1U, 300000U, 1190000U}) {
        const FileSizeLimit full(limit);
        ExpectRefused(m_source, m_output, {CutReason::OutputNotWritable, m_output, EFBIG});
    }
    ExpectRefused(m_source, "/dev/full", {CutReason::DiskFull, "/dev/full"});
    EXPECT_EQ(access("/dev/full", W_OK), 0); // a device is not deleted
}

// The file is so large that it can be changed before it is cut; where the machine was too busy for
// that, it is tried again.
TEST_P(CutFailures, ASourceThatIsChangedWhileItIsCut) {
    const std::function<void()> changes[] = {
        [&] { fs::resize_file(m_source, 1000000); },
        [&] { fs::resize_file(m_source, 700000000); },
        [&] { fs::last_write_time(m_source, fs::file_time_type::min()); },
        [&] { fs::rename(m_folder.Write("other", m_bytes), m_source); },
    };
    for (const auto& change : changes) {
        bool isCut = true;
        for (int attempt = 0; attempt < 20 && isCut; ++attempt) {
            m_folder.Write("source", LargeBytes());
            fs::resize_file(m_source, GetParam() == CutMP3File ? 60000000 : 600000000);
            CutProgress progress;
            const CutProgressScope scope(progress);
            const std::jthread other([&](const std::stop_token& stop) {
                while (progress.bytesDone == 0 && !stop.stop_requested()) {
                }
                change();
            });
            isCut = GetParam()(m_source.c_str(), m_output.c_str(), 0.0F, 5000.0F, true);
        }
        EXPECT_FALSE(isCut);
        EXPECT_EQ(CutFailure(), (CutProblem{CutReason::SourceChanged, m_source}));
        EXPECT_FALSE(fs::exists(m_output));
    }
}

TEST_P(CutFailures, TellsHowFarItIsAndCanBeCancelled) {
    CutProgress progress;
    const CutProgressScope scope(progress);
    for (const bool keep : {true, false}) {
        EXPECT_TRUE(GetParam()(m_source.c_str(), m_output.c_str(), 1.0F, 3.0F, keep));
        EXPECT_GT(progress.bytesInAll, keep ? 10000 : 800000);
        EXPECT_EQ(progress.bytesDone, progress.bytesInAll);
    }
    fs::remove(m_output);
    progress.isCancelled = true;
    ExpectRefused(m_source, m_output, {CutReason::Cancelled, m_source});
    EXPECT_EQ(m_alerts.texts, "");
}

INSTANTIATE_TEST_SUITE_P(Formats, CutFailures, testing::Values(CutMP3File, CutWAVFile));

} // namespace
