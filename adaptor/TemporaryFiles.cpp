#include "adaptor/TemporaryFiles.h"

#include "platform/FileReplacement.h"
#include "platform/LockFile.h"
#include "platform/OwnFiles.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string_view>
#include <system_error>
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

const std::string kBeginning = "orvane.Klipra-";
const std::string kLockBeginning = ".klipra-";
const std::string kLockEnd = ".lock";

std::string LockName(pid_t process) {
    return kLockBeginning + std::to_string(process) + kLockEnd;
}

bool Take(std::string_view& text, std::string_view beginning) {
    const bool isThere = text.starts_with(beginning);
    text.remove_prefix(isThere ? beginning.size() : 0);
    return isThere;
}

/// Takes as many of these characters as there are.
/// @return how many
std::size_t TakeAll(std::string_view& text, std::string_view characters) {
    const std::size_t count = std::min(text.find_first_not_of(characters), text.size());
    text.remove_prefix(count);
    return count;
}

/// Takes a process's number, as it is written; 0 for none.
pid_t TakeProcess(std::string_view& text) {
    pid_t process = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), process);
    if (error != std::errc() || process <= 0 || text.front() == '0') {
        return 0;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return process;
}

/// The process that has given a file this name, as that of an edit or as its lock's; 0 for none.
pid_t ProcessOf(std::string_view name) {
    if (Take(name, kLockBeginning)) {
        const pid_t process = TakeProcess(name);
        return name == kLockEnd ? process : 0;
    }
    if (!Take(name, kBeginning)) {
        return 0;
    }
    const pid_t process = TakeProcess(name);
    const bool isSuffixed = Take(name, "-") && TakeAll(name, "0123456789-") > 0;
    if (Take(name, "~") && TakeAll(name, "0123456789abcdef") == 0) {
        return 0;
    }
    return isSuffixed && (name == ".mp3" || name == ".wav") ? process : 0;
}

} // namespace

TemporaryFiles::TemporaryFiles(std::string folder, pid_t process)
    : m_folder(std::move(folder)), m_process(process),
      m_prefix(kBeginning + std::to_string(process) + "-") {
}

std::string TemporaryFiles::MakePath(const std::string& suffix,
                                     const std::string& extension) const {
    const std::size_t fixedLength = m_prefix.size() + 1 + extension.size();
    const std::size_t longest = LongestName(m_folder);
    const std::size_t room = longest > fixedLength ? longest - fixedLength : 0;
    return m_folder + "/" + m_prefix + FitSuffix(suffix, room) + "." + extension;
}

std::string TemporaryFiles::LockPath() const {
    return m_folder + "/" + LockName(m_process);
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

void TemporaryFiles::DeleteThoseOfTheDead(const std::set<pid_t>& dead,
                                          const std::set<pid_t>& living) const {
    std::set<pid_t> processes;
    const auto isAny = [](const std::string& name) { return ProcessOf(name) != 0; };
    for (const std::string& name : OwnFilesIn(m_folder, isAny)) {
        processes.insert(ProcessOf(name));
    }
    processes.erase(m_process);
    for (const pid_t process : processes) {
        const std::string path = m_folder + "/" + LockName(process);
        std::error_code error;
        if (!std::filesystem::exists(path, error) &&
            !(dead.contains(process) && !living.contains(process))) {
            continue;
        }
        if (const LockFile lock(path); lock.IsLocked()) {
            RemoveOwnFiles(m_folder, [&](const std::string& name) {
                return name.starts_with(kBeginning) && ProcessOf(name) == process;
            });
            lock.Remove();
        }
    }
}
