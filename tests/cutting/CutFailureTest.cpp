#include "cutting/CutMP3.h"
#include "cutting/CutWAV.h"
#include "cutting/OutputFile.h"
#include "tests/support/AlertRecorder.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/Mp3Builder.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/// What holds for both cutters when they cannot do their work.
class CutFailures
    : public testing::TestWithParam<bool (*)(const char*, const char*, float, float, bool)> {
protected:
    void ExpectRefused(const std::string& source, const std::string& output) {
        SCOPED_TRACE(source + " to " + output);
        m_alerts.texts.clear();
        EXPECT_FALSE(GetParam()(source.c_str(), output.c_str(), 0.0F, 1000.0F, true));
        EXPECT_FALSE((m_alerts.texts + CutFailure()).empty());
        EXPECT_EQ(TemporaryFolder::Read(m_source), m_bytes);
        EXPECT_FALSE(fs::exists(m_output));
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
    for (const std::string& source : {m_folder.Path("missing"), m_folder.Path(""), fifo,
                                      std::string("/dev/zero"), m_folder.Write("empty", "")}) {
        ExpectRefused(source, m_output);
    }
    const std::string link = m_folder.Path("link");
    fs::create_symlink(m_source, link);
    for (const std::string& output : {m_folder.Path("no/such/folder"), m_source, link}) {
        ExpectRefused(m_source, output);
    }
}

TEST_P(CutFailures, ADiskThatIsFullAtAnyPoint) {
    for (const rlim_t limit : {0U, 1U, 300000U, 1190000U}) {
        const FileSizeLimit full(limit);
        ExpectRefused(m_source, m_output);
        EXPECT_NE(CutFailure().find("cannot write the output"), std::string::npos) << limit;
    }
    ExpectRefused(m_source, "/dev/full");
    EXPECT_EQ(access("/dev/full", W_OK), 0); // a device is not deleted
}

INSTANTIATE_TEST_SUITE_P(Formats, CutFailures, testing::Values(CutMP3File, CutWAVFile));

} // namespace
