#include "cli/Commands.h"
#include "fuzz/Targets.h"
#include "tests/support/AlertRecorder.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <memory>
#include <utility>

namespace {

/// Whether UTF-8 holds a control character other than the end of a line.
bool HoldsControls(const std::string& text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const auto next = static_cast<unsigned char>(i + 1 < text.size() ? text[i + 1] : ' ');
        const bool isC1 = byte == 0xC2 && next >= 0x80 && next < 0xA0;
        if ((byte < ' ' && byte != '\n') || byte == 0x7F || isC1) {
            return true;
        }
    }
    return false;
}

std::string Info(const std::string& path, bool json) {
    AlertRecorder alerts; // takes the messages
    Arguments arguments;
    arguments.operands = {path};
    if (json) {
        arguments.options[Option::Json] = "";
    }
    const FilePointer output = OpenMemoryFile();
    const std::shared_ptr<std::FILE> standard(std::exchange(stdout, output.get()),
                                              [](std::FILE* file) { stdout = file; });
    const int status = RunInfo(arguments);
    std::fflush(output.get());
    std::string text = ReadPath(PathOf(output));
    Require((status == kDone) == !text.empty(), "a result or none");
    Require(!HoldsControls(text), "no byte of a file commands a terminal");
    return text;
}

} // namespace

void FuzzInfo(const FuzzInput& input) {
    const std::string path = FuzzPath(input.Flag(1) ? "input.wav" : "input.mp3");
    std::filesystem::remove(path);
    std::filesystem::create_symlink(input.Path(), path);
    const std::string text = Info(path, false);
    const std::string json = Info(path, true);
    Require(text.empty() == json.empty(), "both forms or none");
    Require(json.empty() || nlohmann::json::accept(json), "the JSON is JSON");
    Require(input.IsUntouched(), "the file is only read");
}
