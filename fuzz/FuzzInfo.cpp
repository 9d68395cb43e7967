#include "cli/Commands.h"
#include "fuzz/Targets.h"
#include "tests/support/AlertRecorder.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <unistd.h>

namespace {

/// Standard output, while it lives, in a file.
class StandardOutput {
public:
    StandardOutput() : m_file(OpenMemoryFile()), m_before(dup(STDOUT_FILENO)) {
        std::fflush(stdout);
        dup2(m_file, STDOUT_FILENO);
    }
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;
    ~StandardOutput() {
        std::fflush(stdout);
        dup2(m_before, STDOUT_FILENO);
        close(m_before);
        close(m_file);
    }

    std::string Text() const {
        std::fflush(stdout);
        return ReadDescriptor(m_file);
    }

private:
    int m_file;
    int m_before;
};

std::string Info(const std::string& path, bool json) {
    AlertRecorder alerts; // takes the messages
    Arguments arguments;
    arguments.operands = {path};
    arguments.json = json;
    const StandardOutput output;
    const int status = RunInfo(arguments);
    std::string text = output.Text();
    Require((status == kDone) == !text.empty(), "a result or none");
    return text;
}

bool IsForTerminals(const std::string& text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return (c >= ' ' && c <= '~') || c == '\n'; });
}

} // namespace

void FuzzInfo(const FuzzInput& input) {
    const std::string path = FuzzFolder() + (input.Flag(1) ? "input.wav" : "input.mp3");
    std::filesystem::remove(path);
    std::filesystem::create_symlink(input.Path(), path);
    const std::string text = Info(path, false);
    const std::string json = Info(path, true);
    Require(text.empty() == json.empty(), "both forms or none");
    Require(IsForTerminals(text) && IsForTerminals(json), "no byte of a file commands a terminal");
    Require(json.empty() || nlohmann::json::accept(json), "the JSON is JSON");
    Require(input.IsUntouched(), "the file is only read");
}
