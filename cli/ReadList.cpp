#include "cli/ReadList.h"

#include "cli/Report.h"
#include "platform/RegularFile.h"
#include "platform/SystemError.h"

#include <array>
#include <cerrno>
#include <optional>

namespace {

constexpr char kStandardInput[] = "-";

// None when it cannot be read, or is larger than any list of places.
std::optional<std::string> ReadAll(std::FILE* file) {
    constexpr std::size_t kMostBytes = 16U << 20U;
    std::string bytes;
    std::array<char, 65536> block{};
    while (const std::size_t size = std::fread(block.data(), 1, block.size(), file)) {
        bytes.append(block.data(), size);
        if (bytes.size() > kMostBytes) {
            errno = EFBIG;
            return std::nullopt;
        }
    }
    return std::ferror(file) == 0 ? std::optional(bytes) : std::nullopt;
}

// A list may come from a pipe, too: <(...) of a shell.
std::optional<std::string> ReadPath(const std::string& path) {
    if (path == kStandardInput) {
        return ReadAll(stdin);
    }
    const FilePointer file(std::fopen(path.c_str(), "rbe"));
    return file == nullptr ? std::nullopt : ReadAll(file.get());
}

std::string Name(const std::string& path) {
    return path == kStandardInput ? "standard input" : path;
}

} // namespace

bool ReadList(const std::string& path, std::vector<ListedPlace>& places) {
    const std::optional<std::string> bytes = ReadPath(path);
    if (!bytes) {
        ReportError(Name(path), SystemErrorText(errno));
        return false;
    }
    try {
        places = ParsePlaceList(*bytes);
    } catch (const ListError& e) {
        ReportListError(path, e);
        return false;
    }
    return true;
}

void ReportListError(const std::string& path, const ListError& error) {
    ReportError(Name(path), error.what());
}
