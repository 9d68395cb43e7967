#pragma once

#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <sys/wait.h>

/// Runs the built klipra-cli in a folder of the test's own. It holds "a.WAV": 100 s of mono, 16 bit
/// at 8000 Hz, loud but for 2.5 s from second 4 and for 0.1 s from second 8.
class CliTest : public testing::Test {
protected:
    static constexpr std::size_t kSecond = 16000; ///< bytes of its samples

    CliTest() {
        for (int i = 0; i < 800'000; ++i) {
            const bool isQuiet = (i >= 32000 && i < 52000) || (i >= 64000 && i < 64800);
            m_wav.samples += static_cast<char>(isQuiet ? 1 : i / 100);
            m_wav.samples += static_cast<char>(isQuiet ? 0 : i % 100 + 10);
        }
        m_folder.Write("a.WAV", m_wav.Bytes());
    }

    /// What a run that does its work prints.
    /// @param arguments  as a shell takes them, redirections too
    std::string Done(const std::string& arguments) const {
        EXPECT_EQ(Run(arguments), 0) << arguments;
        EXPECT_EQ(TemporaryFolder::Read(m_err), "") << arguments;
        return TemporaryFolder::Read(m_out);
    }

    /// A run that ends with this status says so on one line that holds `message`, for wrong usage
    /// with the usage behind it, and leaves every file as it was.
    void ExpectFailure(int status, const std::string& arguments, const std::string& message) const {
        SCOPED_TRACE(arguments);
        const auto before = Snapshot();
        EXPECT_EQ(Run(arguments), status);
        EXPECT_EQ(TemporaryFolder::Read(m_out), "");
        const std::string err = TemporaryFolder::Read(m_err);
        EXPECT_NE(err.find(message), std::string::npos) << err;
        const auto lines = std::count(err.begin(), err.end(), '\n');
        EXPECT_TRUE(status == 1 ? lines == 1 : lines > 1) << err;
        EXPECT_TRUE(Snapshot() == before);
    }

    /// A run ends with this status, and what it prints is matched by these regular expressions,
    /// each `.` of which may be a line's end.
    void ExpectOutcome(const std::string& arguments, int status, const std::string& out,
                       const std::string& err) const {
        EXPECT_EQ(Run(arguments), status) << arguments;
        const auto matches = [](const std::string& path, const std::string& pattern) {
            std::string text = TemporaryFolder::Read(path);
            std::ranges::replace(text, '\n', ' ');
            return std::regex_match(text, std::regex(pattern)) ? "" : pattern + " is not " + text;
        };
        EXPECT_EQ(matches(m_out, out), "") << arguments;
        EXPECT_EQ(matches(m_err, err), "") << arguments;
    }

    /// The exit status of a whole line of the shell, in which the program has its name.
    int RunLine(const std::string& line) const {
        const std::string command = "cd " + m_folder.Path("") +
                                    " && PATH=$(dirname " KLIPRA_CLI "):$PATH && { " + line +
                                    "; } >" + m_out + " 2>" + m_err;
        return WEXITSTATUS(std::system(command.c_str())); // NOLINT: no command but our own
    }

    /// All that is in the folder, by name: a file's bytes, a link's target.
    std::map<std::string, std::string> Snapshot() const {
        std::map<std::string, std::string> files;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(m_folder.Path(""))) {
            const std::string path = entry.path().string();
            files[path] = entry.is_symlink() ? std::filesystem::read_symlink(path).string()
                                             : TemporaryFolder::Read(path);
        }
        return files;
    }

    /// What follows a header like that of "a.WAV".
    std::string Samples(const std::string& name) const {
        return TemporaryFolder::Read(m_folder.Path(name)).substr(m_wav.Header().size());
    }

    TemporaryFolder m_folder;
    WavBuilder m_wav{.channels = 1, .rateHz = 8000, .bytesPerSecond = kSecond, .blockAlign = 2};

private:
    // The exit status; that of a shell when a signal ended the program.
    int Run(const std::string& arguments) const {
        const std::string command = "cd " + m_folder.Path("") + " && " KLIPRA_CLI " >" + m_out +
                                    " 2>" + m_err + " " + arguments;
        return WEXITSTATUS(std::system(command.c_str())); // NOLINT: no command but our own
    }

    TemporaryFolder m_streams;
    std::string m_out = m_streams.Path("out");
    std::string m_err = m_streams.Path("err");
};
