#include "tests/cli/RunCli.h"
#include "tests/support/Mp3Builder.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

namespace fs = std::filesystem;

class CutCommands : public testing::Test {
protected:
    // Two minutes at 8000 bytes a second: where a range begins tells its time.
    CutCommands() {
        WavBuilder builder{.channels = 1,
                           .rateHz = 8000,
                           .bytesPerSecond = 8000,
                           .blockAlign = 1,
                           .samples = WavBuilder::Pattern(960000)};
        m_header = builder.Header().size();
        m_samples = builder.samples;
        m_wav = m_folder.Write("a b.WAV", builder.Bytes());
    }

    std::string Samples(const std::string& path) const {
        const std::string bytes = TemporaryFolder::Read(path);
        return bytes.substr(std::min(m_header, bytes.size()));
    }

    std::ptrdiff_t CountFiles() const {
        return std::distance(fs::directory_iterator(m_folder.Path("")), {});
    }

    TemporaryFolder m_folder;
    std::string m_wav;
    std::string m_samples;
    std::size_t m_header = 0;
    std::string m_output = m_folder.Path("output");
};

TEST_F(CutCommands, TakeTimesInEveryFormAndEitherOrder) {
    const std::string expected = m_samples.substr(90 * 8000, 8000 / 4);
    const std::vector<std::pair<std::string, std::string>> ranges = {
        {"90", "90.25"}, {"1:30", "1:30.25"},     {"0:01:30.25", "0:1:30"},
        {"90.25", "90"}, {"9.0e1", "01:30.2500"},
    };
    for (const auto& [start, end] : ranges) {
        SCOPED_TRACE(testing::Message() << start << " " << end);
        const CliResult result = RunCli({"extract", m_wav, start, end, m_output});
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.out + result.err, "");
        EXPECT_TRUE(Samples(m_output) == expected);
    }
    EXPECT_EQ(RunCli({"cut", m_wav, "1:30.25", "1:30", m_output}).status, 0);
    EXPECT_TRUE(Samples(m_output) == m_samples.substr(0, 90 * 8000) + m_samples.substr(722000));
    EXPECT_EQ(CountFiles(), 2);
}

TEST_F(CutCommands, RefuseWrongUsageWithTheUsageLine) {
    for (const std::string time : {"", "x", "-1", "nan", "inf", "1e999", "1:5", "1:60", "1::30",
                                   "1:60:00", "1:2:3:04", "0x10", "1.5:00", "5 ", ":30"}) {
        SCOPED_TRACE(time);
        const CliResult result = RunCli({"extract", m_wav, time, "10", m_output});
        EXPECT_EQ(result.status, 2);
        EXPECT_NE(result.err.find("Usage: klipra-cli extract FILE START END OUT"),
                  std::string::npos);
    }
    const std::vector<std::vector<std::string>> calls = {
        {},
        {"frobnicate"},
        {"cut", m_wav, "1", "2"},
        {"cut", m_wav, "1", "2", m_output, "more"},
        {"cut", "--json", m_wav, "1", "2", m_output},
        {"info", "--verbose", m_wav},
        {"scenes", m_wav, "--level"},
        {"scenes", m_wav, "--level", "0"},
        {"scenes", m_wav, "--level", "0.1x"},
        {"scenes", m_wav, "--time", "soon"},
        {"split", m_wav, m_output + "%"},
        {"split", m_wav, "1", m_output},
        {"split", "--time", "1", m_wav, "1", m_output + "%"},
    };
    for (const auto& call : calls) {
        const CliResult result = RunCli(call);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_NE(result.err.find("Usage: "), std::string::npos);
    }
    EXPECT_EQ(CountFiles(), 1);
}

TEST_F(CutCommands, LeaveOutAsItWasWhenTheyFail) {
    const std::string before = TemporaryFolder::Read(m_wav);
    const std::string old = m_folder.Write("old.wav", "old");
    const std::string broken = m_folder.Write("broken.wav", before.substr(0, 40));
    const std::string empty = m_folder.Write("empty.mp3", "");
    const std::string ogg = m_folder.Write("other.ogg", before);
    const std::string folder = m_folder.Path("folder");
    fs::create_directory(folder);
    const std::string link = m_folder.Path("link.wav");
    fs::create_symlink(m_wav, link);
    const std::ptrdiff_t files = CountFiles();

    const std::vector<std::vector<std::string>> calls = {
        {broken, old},
        {empty, old},
        {ogg, old},
        {m_folder.Path("none.mp3"), old},
        {m_folder.Path("none.wav"), old},
        {m_wav, m_wav},
        {m_wav, link},
        {m_wav, folder},
        {m_wav, m_folder.Path("no/folder.wav")},
        {m_wav, "/dev/full"},
    };
    for (const auto& call : calls) {
        SCOPED_TRACE(call[0] + " to " + call[1]);
        const CliResult result = RunCli({"extract", call[0], "1", "2", call[1]});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_TRUE(result.err.find(call[0]) != std::string::npos ||
                    result.err.find(call[1]) != std::string::npos)
            << result.err;
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
        EXPECT_EQ(TemporaryFolder::Read(old), "old");
        EXPECT_TRUE(TemporaryFolder::Read(m_wav) == before);
        EXPECT_EQ(CountFiles(), files);
    }
}

TEST_F(CutCommands, WriteTheFileThatALinkNames) {
    const std::string old = m_folder.Write("old.wav", "old");
    const std::string link = m_folder.Path("link.wav");
    fs::create_symlink("old.wav", link);
    EXPECT_EQ(RunCli({"extract", m_wav, "0", "1", link}).status, 0);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_TRUE(Samples(old) == m_samples.substr(0, 8000));
}

TEST_F(CutCommands, TakeNamesThatLookLikeSomethingElse) {
    Mp3Builder().Frames(30).WriteTo(m_folder.Path("-1 %s'\".mp3"));
    const CliResult result =
        RunCli({"extract", "--", "-1 %s'\".mp3", "0", "0.1", "曲.mp3"}, m_folder.Path(""));
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(fs::file_size(m_folder.Path("曲.mp3")), 5 * 417U);
}

TEST(CommandLine, HelpAndVersion) {
    const CliResult help = RunCli({"--help"});
    EXPECT_EQ(help.status, 0);
    for (const std::string command : {"info", "extract", "cut", "split", "scenes"}) {
        EXPECT_NE(help.out.find("klipra-cli " + command + " "), std::string::npos);
    }
    const CliResult version = RunCli({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out.substr(0, 11), "klipra-cli ");
}

} // namespace
