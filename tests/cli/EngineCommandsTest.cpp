#include "tests/cli/RunCli.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace {

namespace fs = std::filesystem;

class EngineCommands : public testing::Test {
protected:
    // Ten seconds of mono at 8000 Hz, loud but for 2.5 s from second 4 and for 0.1 s from second 8.
    EngineCommands() {
        WavBuilder builder{.channels = 1, .rateHz = 8000, .bytesPerSecond = 16000, .blockAlign = 2};
        for (int i = 0; i < 80000; ++i) {
            const bool isQuiet = (i >= 32000 && i < 52000) || (i >= 64000 && i < 64800);
            builder.samples += isQuiet ? "\x01" : "\x7F";
            builder.samples += isQuiet ? '\0' : static_cast<char>(i % 100 + 10);
        }
        m_headerSize = builder.Header().size();
        m_samples = builder.samples;
        m_wav = m_folder.Write("a b.wav", builder.Bytes());
    }

    std::string Samples(const std::string& name) const {
        const std::string bytes = TemporaryFolder::Read(m_folder.Path(name));
        return bytes.substr(std::min(m_headerSize, bytes.size()));
    }

    std::ptrdiff_t CountFiles() const {
        return std::distance(fs::directory_iterator(m_folder.Path("")), {});
    }

    TemporaryFolder m_folder;
    std::string m_wav;
    std::string m_samples;
    std::size_t m_headerSize = 0;
};

TEST_F(EngineCommands, ScenesListsTheQuietPlaces) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{}, "64000 4.000000\n104000 6.500000\n"},
        {{"--time", "0.1"}, "64000 4.000000\n104000 6.500000\n128800 8.050000\n"},
        {{"--time=0:00.1", "--level=0.5"}, "64000 4.000000\n104000 6.500000\n128800 8.050000\n"},
        {{"--time", "0", "--level", "1e-9"}, ""},
    };
    for (const auto& [options, expected] : cases) {
        std::vector<std::string> call = {"scenes", m_wav};
        call.insert(call.end(), options.begin(), options.end());
        const CliResult result = RunCli(call);
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.out, expected);
        EXPECT_EQ(result.err, "");
    }
    EXPECT_EQ(nlohmann::json::parse(RunCli({"scenes", "--json", m_wav}).out).dump(),
              R"({"positions":[{"bytes":64000,"seconds":4.0},{"bytes":104000,"seconds":6.5}]})");
    const CliResult failed = RunCli({"scenes", m_folder.Write("text.mp3", "no audio")});
    EXPECT_EQ(failed.status, 1);
    EXPECT_NE(failed.err.find("text.mp3"), std::string::npos);
}

TEST_F(EngineCommands, SplitWritesEveryPiece) {
    m_folder.Write("100%-2.wav", "old");
    const CliResult result =
        RunCli({"split", m_wav, "0:07.5", "2.5", "5", m_folder.Path("100%-%.wav")});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out + result.err, "");
    EXPECT_TRUE(Samples("100%-1.wav") == m_samples.substr(0, 40000));
    EXPECT_TRUE(Samples("100%-2.wav") == m_samples.substr(40000, 40000));
    EXPECT_TRUE(Samples("100%-3.wav") == m_samples.substr(80000, 40000));
    EXPECT_TRUE(Samples("100%-4.wav") == m_samples.substr(120000));
    EXPECT_EQ(CountFiles(), 5);
}

TEST_F(EngineCommands, SplitLeavesEverythingAsItWasWhenItFails) {
    const std::string input = TemporaryFolder::Read(m_wav);
    const std::string old = m_folder.Write("p-1.wav", "old");
    const std::string pattern = m_folder.Path("p-%.wav");
    fs::create_directory(m_folder.Path("q-2.wav"));
    fs::create_symlink(m_wav, m_folder.Path("r-2.wav"));
    const std::ptrdiff_t files = CountFiles();

    const std::vector<std::vector<std::string>> calls = {
        {"0", pattern},
        {"10", pattern},
        {"5", "5.00001", pattern}, // the same sample frame
        {"1", m_folder.Path("q-%.wav")},
        {"1", m_folder.Path("r-%.wav")},
        {"1", m_folder.Path("%/p.wav")},
    };
    for (const auto& call : calls) {
        SCOPED_TRACE(call[0] + " " + call.back());
        std::vector<std::string> words = {"split", m_wav};
        words.insert(words.end(), call.begin(), call.end());
        const CliResult result = RunCli(words);
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
        EXPECT_EQ(CountFiles(), files);
        EXPECT_EQ(TemporaryFolder::Read(old), "old");
    }
    const FileSizeLimit limit(50000); // enough for the first piece only
    EXPECT_EQ(RunCli({"split", m_wav, "1", pattern}).status, 1);
    EXPECT_EQ(CountFiles(), files);
    EXPECT_EQ(TemporaryFolder::Read(old), "old");
    EXPECT_TRUE(TemporaryFolder::Read(m_wav) == input);
}

} // namespace
