#include "adaptor/TemporaryFiles.h"

#include "platform/FileReplacement.h"

#include <cstdio>
#include <filesystem>
#include <functional>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

std::size_t LongestName(const std::string& folder) {
    constexpr std::size_t kUsual = 255;
    const long longest = pathconf(folder.c_str(), _PC_NAME_MAX);
    return longest > 0 ? static_cast<std::size_t>(longest) : kUsual;
}

/// The suffix where it has room, otherwise its beginning, "~" and a hash of all of it.
std::string FitSuffix(const std::string& suffix, std::size_t room) {
    if (suffix.size() <= room) {
        return suffix;
    }
    char hash[2 + 2 * sizeof(std::size_t)];
    const int hashLength =
        std::snprintf(hash, sizeof hash, "~%0*zx", static_cast<int>(2 * sizeof(std::size_t)),
                      std::hash<std::string>()(suffix));
    const auto length = static_cast<std::size_t>(hashLength);
    return suffix.substr(0, room > length ? room - length : 0) + hash;
}

} // namespace

TemporaryFiles::TemporaryFiles(std::string folder, pid_t process)
    : m_folder(std::move(folder)), m_prefix("orvane.Klipra-" + std::to_string(process) + "-") {
}

std::string TemporaryFiles::MakePath(const std::string& suffix,
                                     const std::string& extension) const {
    const std::size_t fixedLength = m_prefix.size() + 1 + extension.size();
    const std::size_t longest = LongestName(m_folder);
    const std::size_t room = longest > fixedLength ? longest - fixedLength : 0;
    return m_folder + "/" + m_prefix + FitSuffix(suffix, room) + "." + extension;
}

void TemporaryFiles::DeleteAll() const {
    namespace fs = std::filesystem;
    std::error_code error;
    std::vector<fs::path> found;
    // All names first: what a listing does while files go away is not defined.
    for (fs::directory_iterator entry(m_folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        if (name.starts_with(m_prefix) || name.starts_with(FileReplacement::HiddenPrefix())) {
            found.push_back(entry->path());
        }
    }
    for (const fs::path& path : found) {
        fs::remove(path, error);
    }
}
