#include "cutting/CutMP3.h"
#include "cutting/CutWAV.h"
#include "cutting/OutputFile.h"
#include "tests/support/AlertRecorder.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/Mp3Builder.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace {

using Cutter = std::function<bool(const char*, const char*, float, float, bool)>;

/// What holds for both cutters when they cannot do their work.
class CutFailures : public testing::TestWithParam<bool> {
protected:
    CutFailures() {
        if (GetParam()) {
            m_cut = CutMP3File;
            m_bytes = Mp3Builder().Xing(15, 3000, 1).Lame("LAME3.99r").Frames(3000).Id3v1().Bytes();
        } else {
            m_cut = CutWAVFile;
            m_bytes = WavBuilder{.samples = WavBuilder::Pattern(1200000)}.Bytes();
        }
        m_source = m_folder.Write("source", m_bytes);
    }

    void ExpectRefused(const std::string& source, const std::string& output) {
        m_alerts.texts.clear();
        EXPECT_FALSE(m_cut(source.c_str(), output.c_str(), 0.0F, 1000.0F, true));
        EXPECT_FALSE((m_alerts.texts + CutFailure()).empty());
        EXPECT_EQ(TemporaryFolder::Read(m_source), m_bytes);
    }

    TemporaryFolder m_folder;
    AlertRecorder m_alerts;
    Cutter m_cut;
    std::string m_bytes;
    std::string m_source;
    std::string m_output = m_folder.Path("output");
};

TEST_P(CutFailures, SourcesThatAreNoFiles) {
    const std::string fifo = m_folder.Path("fifo");
    ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
    for (const std::string& source : {m_folder.Path("missing"), m_folder.Path(""), fifo,
                                      std::string("/dev/zero"), m_folder.Write("empty", "")}) {
        SCOPED_TRACE(source);
        ExpectRefused(source, m_output);
        EXPECT_FALSE(std::filesystem::exists(m_output));
    }
}

TEST_P(CutFailures, OutputsThatCannotBeCreated) {
    ExpectRefused(m_source, m_folder.Path("no/such/folder"));
    ExpectRefused(m_source, m_folder.Path(""));
    ExpectRefused(m_source, m_source);
    const std::string link = m_folder.Path("link");
    std::filesystem::create_symlink(m_source, link);
    ExpectRefused(m_source, link);
}

TEST_P(CutFailures, ADiskThatIsFullAtAnyPoint) {
    for (const rlim_t limit : {0, 1, 300000, 1190000}) {
        SCOPED_TRACE(limit);
        const FileSizeLimit full(limit);
        ExpectRefused(m_source, m_output);
        EXPECT_NE(CutFailure().find("cannot write the output"), std::string::npos);
        EXPECT_FALSE(std::filesystem::exists(m_output));
    }
    EXPECT_TRUE(m_cut(m_source.c_str(), m_output.c_str(), 0.0F, 1000.0F, true));
    ASSERT_EQ(access("/dev/full", W_OK), 0);
    ExpectRefused(m_source, "/dev/full");
    EXPECT_EQ(access("/dev/full", W_OK), 0); // a device is not deleted
}

TEST_P(CutFailures, APipeThatItsReaderCloses) {
    std::signal(SIGPIPE, SIG_IGN);
    ASSERT_EQ(mkfifo(m_output.c_str(), 0600), 0);
    std::thread reader([&] { close(open(m_output.c_str(), O_RDONLY)); });
    ExpectRefused(m_source, m_output);
    reader.join();
    EXPECT_FALSE(std::filesystem::exists(m_output));
}

INSTANTIATE_TEST_SUITE_P(Formats, CutFailures, testing::Bool(),
                         [](const auto& suite) { return suite.param ? "MP3" : "WAV"; });

TEST(CutMP3Failures, SaysThatTheSourceEndsInTheMiddleOfAFrame) {
    const TemporaryFolder folder;
    AlertRecorder alerts;
    const std::string source = folder.Path("source.mp3");
    const std::string output = folder.Path("output.mp3");
    Mp3Builder().Frames(30).Truncate(100).WriteTo(source);
    EXPECT_TRUE(CutMP3File(source.c_str(), output.c_str(), 0.0F, 0.5F, true));
    EXPECT_FALSE(CutMP3File(source.c_str(), output.c_str(), 0.0F, 5.0F, true));
    EXPECT_EQ(alerts.texts, "The source ends in the middle of a frame: '" + source +
                                "'\nNo frame found before end of file was reached.");
    EXPECT_FALSE(std::filesystem::exists(output));
}

TEST(CutMP3Failures, RefusesFilesWithoutAFrame) {
    const TemporaryFolder folder;
    AlertRecorder alerts;
    const std::string output = folder.Path("output.mp3");
    const auto refuse = [&](const std::string& bytes) {
        alerts.texts.clear();
        EXPECT_FALSE(CutMP3File(folder.Write("source.mp3", bytes).c_str(), output.c_str(), 0.0F,
                                1.0F, true));
        return alerts.texts.substr(alerts.texts.find('\n') + 1);
    };
    EXPECT_EQ(refuse(std::string(40000, '\0')), "No frame found within tolerance range.");
    EXPECT_EQ(refuse(std::string(1000, '\0')), "No frame found before end of file was reached.");
    EXPECT_EQ(refuse(Mp3Builder().Garbage(500).Raw("LYRICSEND").Bytes()), "Corrupt Lyrics3 Tag");
}

} // namespace
