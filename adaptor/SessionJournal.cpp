#include "adaptor/SessionJournal.h"

#include "platform/FileReplacement.h"
#include "platform/OwnFiles.h"
#include "platform/RegularFile.h"
#include "platform/SyncFiles.h"

#include <charconv>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostBytes = std::size_t{4} * 1024 * 1024;
constexpr const char* kJournal = ".json";
constexpr const char* kLock = ".lock";

std::string LockPath(const std::string& journal) {
    return fs::path(journal).replace_extension(kLock).string();
}

/// Makes the folder, and sees to it that it is its owner's alone.
bool PrepareFolder(const std::string& folder) {
    std::error_code error;
    fs::create_directories(folder, error);
    struct stat status {};
    return !folder.empty() && lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == geteuid() && chmod(folder.c_str(), S_IRWXU) == 0;
}

/// @return the bytes of a regular file of this user's that is no larger than a journal; or none
std::optional<std::string> ReadJournal(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return std::nullopt;
    }
    const FilePointer file(fdopen(descriptor, "rb"));
    struct stat status {};
    if (file == nullptr || fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_uid != geteuid() || status.st_size > static_cast<off_t>(kMostBytes)) {
        return std::nullopt;
    }
    std::string text(static_cast<std::size_t>(status.st_size), '\0');
    text.resize(std::fread(text.data(), 1, text.size(), file.get()));
    return text;
}

bool WriteText(const std::string& path, const std::string& text) {
    FilePointer file = OpenForWriting(path.c_str());
    return file != nullptr && std::fwrite(text.data(), 1, text.size(), file.get()) == text.size() &&
           std::fclose(file.release()) == 0;
}

/// The paths of all journals in a folder, also of those that have but a lock.
std::set<std::string> JournalsIn(const std::string& folder) {
    std::set<std::string> journals;
    const auto isChosen = [](const std::string& name) {
        return name.ends_with(kJournal) || name.ends_with(kLock);
    };
    for (const std::string& name : OwnFilesIn(folder, isChosen)) {
        journals.insert((fs::path(folder) / name).replace_extension(kJournal));
    }
    return journals;
}

pid_t ProcessOf(const std::string& name) {
    pid_t process = 0;
    std::from_chars(name.data(), name.data() + name.size(), process);
    return process;
}

bool IsOld(const fs::path& path, fs::file_time_type& time) {
    constexpr auto kKept = std::chrono::days(30);
    std::error_code error;
    time = fs::last_write_time(path, error);
    return !error && fs::file_time_type::clock::now() - time > kKept;
}

} // namespace

std::string SessionJournal::Folder() {
    // The environment does not change while the program runs.
    const char* const state = std::getenv("XDG_STATE_HOME"); // NOLINT(concurrency-mt-unsafe)
    const char* const home = std::getenv("HOME");            // NOLINT(concurrency-mt-unsafe)
    if (state != nullptr && state[0] == '/') {
        return std::string(state) + "/klipra/sessions";
    }
    return home != nullptr && home[0] == '/' ? std::string(home) + "/.local/state/klipra/sessions"
                                             : "";
}

SessionJournal::SessionJournal(const std::string& folder) {
    constexpr int kAttempts = 100;
    if (!PrepareFolder(folder)) {
        return;
    }
    const std::string name = folder + "/" + std::to_string(getpid());
    for (int attempt = 0; attempt < kAttempts && m_path.empty(); ++attempt) {
        std::string path = name;
        if (attempt > 0) {
            path.append("-").append(std::to_string(attempt));
        }
        path += kJournal;
        std::error_code error;
        if (fs::exists(fs::symlink_status(path, error))) {
            continue;
        }
        if (LockFile lock(LockPath(path)); lock.IsLocked()) {
            m_lock = std::move(lock);
            m_path = path;
        }
    }
}

SessionJournal::~SessionJournal() {
    std::error_code error;
    if (IsOpen() && !fs::exists(m_path, error)) {
        m_lock.Remove();
    }
}

bool SessionJournal::Write(const SessionRecord& record) const {
    if (!IsOpen()) {
        return false;
    }
    if (record.steps.empty()) {
        Remove();
        return true;
    }
    const std::string text = WriteSessionRecord(record);
    // Nobody else may read the lock either.
    FileReplacement replacement(m_path, LockPath(m_path), Lasting::ForGood);
    return text.size() <= kMostBytes && !replacement.GetPath().empty() &&
           WriteText(replacement.GetPath(), text) && replacement.Commit();
}

void SessionJournal::Remove() const {
    if (IsOpen()) {
        unlink(m_path.c_str());
    }
}

void SessionJournal::Left::Remove() const {
    unlink(path.c_str());
    lock.Remove();
}

void SessionJournal::TakeOver(Left&& left) {
    if (IsOpen() && std::rename(left.path.c_str(), m_path.c_str()) == 0) {
        left.lock.Remove();
        SyncFoldersOf({m_path});
        return;
    }
    if (IsOpen()) {
        m_lock.Remove();
    }
    m_path = left.path;
    m_lock = std::move(left.lock);
}

SessionJournal::Findings SessionJournal::LookAround(const std::string& folder,
                                                    const FileState& file) {
    Findings findings;
    fs::file_time_type latest;
    for (const std::string& path : JournalsIn(folder)) {
        LockFile lock(LockPath(path));
        (lock.IsLocked() ? findings.deadProcesses : findings.livingProcesses)
            .insert(ProcessOf(fs::path(path).filename()));
        if (!lock.IsLocked()) {
            continue;
        }
        fs::file_time_type time;
        std::error_code error;
        if (IsOld(path, time) || !fs::exists(fs::symlink_status(path, error))) {
            Left{{}, path, std::move(lock)}.Remove();
            continue;
        }
        const auto text = ReadJournal(path);
        auto record = text ? ReadSessionRecord(*text) : std::nullopt;
        const bool isOffered = record && !record->steps.empty() && record->IsOf(file);
        if (isOffered && (!findings.left || time > latest)) {
            findings.left = Left{std::move(*record), path, std::move(lock)};
            latest = time;
        }
    }
    return findings;
}
