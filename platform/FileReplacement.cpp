#include "platform/FileReplacement.h"

#include "platform/OwnFiles.h"
#include "platform/RegularFile.h"
#include "platform/SyncFiles.h"
#include "platform/SystemError.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

constexpr mode_t kMostPermissions = 0666; // of a new file, less what the user's mask takes away
constexpr int kAttempts = 100;

// Those that keep a descriptor; ten thousand at a time may not.
constexpr int kMostDescriptors = 64;
std::atomic<int> descriptorsKept{0};

constexpr std::string_view kHidden = ".klipra-";

/// Whether a name is one that HiddenNameBeside gives: two numbers. A file that has stepped aside
/// for another ("-old") is whole, and a person's.
bool IsHiddenName(const std::string& name) {
    const std::string digits = "0123456789";
    const std::size_t middle = name.find('-', kHidden.size());
    return name.starts_with(kHidden) && middle != std::string::npos && middle > kHidden.size() &&
           middle + 1 < name.size() && name.find_first_not_of(digits, kHidden.size()) == middle &&
           name.find_first_not_of(digits, middle + 1) == std::string::npos;
}

mode_t PermissionsLike(const std::string& source) {
    struct stat status {};
    return stat(source.c_str(), &status) == 0 ? status.st_mode & kMostPermissions
                                              : kMostPermissions;
}

} // namespace

std::string FileReplacement::HiddenPrefix() {
    return std::string(kHidden) + std::to_string(getpid()) + "-";
}

std::string FileReplacement::HiddenNameBeside(const std::string& target) {
    std::random_device random;
    const std::string name = HiddenPrefix() + std::to_string(random());
    return std::filesystem::path(target).replace_filename(name).string();
}

void FileReplacement::RemoveAbandoned(const std::string& folder) {
    const FolderHold hold = FolderHold::Alone(folder);
    if (hold.IsHeld()) {
        RemoveOwnFiles(folder, IsHiddenName);
    }
}

FileReplacement::FileReplacement(const std::string& target, const std::string& source,
                                 Lasting lasting)
    : m_target(target), m_lasting(lasting) {
    if (CheckTarget()) {
        Create(source);
    }
    if (m_descriptor >= 0 && m_lasting != Lasting::Session) {
        m_writeThrough = WriteThrough::OfProcess();
        m_writeThrough->Add(m_descriptor);
    }
}

FileReplacement::~FileReplacement() {
    CloseDescriptor();
    if (!m_hiddenPath.empty()) {
        unlink(m_hiddenPath.c_str());
    }
}

bool FileReplacement::CheckTarget() {
    if (m_target.empty()) {
        m_error = SystemError(ENOENT);
        return false;
    }
    struct stat status {};
    if (stat(m_target.c_str(), &status) != 0) {
        return true; // absent, or the folder will tell what is wrong
    }
    if (S_ISDIR(status.st_mode)) {
        m_error = SystemError(EISDIR);
    } else if (!S_ISREG(status.st_mode)) {
        m_error = SystemError(EINVAL);
    } else if (faccessat(AT_FDCWD, m_target.c_str(), W_OK, AT_EACCESS) != 0) {
        m_error = SystemError(errno);
    }
    m_permissions = status.st_mode & 07777U;
    return !m_error;
}

void FileReplacement::Create(const std::string& source) {
    // Its owner has to be able to write it, whatever the source allows.
    const mode_t permissions = m_permissions.value_or(PermissionsLike(source) | S_IWUSR);
    const bool keepsDescriptor = descriptorsKept < kMostDescriptors;
    if (!keepsDescriptor || !CreateUnnamed(permissions)) {
        CreateHidden(permissions);
    }
    if (!keepsDescriptor) {
        CloseDescriptor();
    }
}

void FileReplacement::TakeDescriptor(int descriptor) {
    m_descriptor = descriptor;
    ++descriptorsKept;
    if (m_permissions) {
        fchmod(descriptor, *m_permissions); // a file system without permissions is no failure
    }
}

void FileReplacement::CloseDescriptor() {
    if (m_writeThrough != nullptr) {
        m_writeThrough->Remove(m_descriptor);
        m_writeThrough.reset();
    }
    if (m_descriptor >= 0) {
        close(std::exchange(m_descriptor, -1));
        --descriptorsKept;
    }
}

bool FileReplacement::CreateUnnamed(mode_t permissions) {
#ifdef O_TMPFILE
    const int descriptor =
        open(FolderOf(m_target).c_str(), O_WRONLY | O_TMPFILE | O_CLOEXEC, permissions);
    if (descriptor < 0) {
        return false; // not here, or the attempt at a hidden one will tell why
    }
    const std::string path = kOwnDescriptors + std::to_string(descriptor);
    if (access(path.c_str(), F_OK) != 0) {
        close(descriptor);
        return false;
    }
    TakeDescriptor(descriptor);
    m_path = path;
    return true;
#else
    return permissions != permissions;
#endif
}

void FileReplacement::CreateHidden(mode_t permissions) {
    RemoveAbandoned(FolderOf(m_target));
    m_hold = FolderHold::Of(FolderOf(m_target));
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const std::string path = HiddenNameBeside(m_target);
        const int descriptor =
            open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, permissions);
        if (descriptor >= 0) {
            TakeDescriptor(descriptor);
            m_path = m_hiddenPath = path;
            m_error.clear();
            return;
        }
        m_error = SystemError(errno);
        if (errno != EEXIST) {
            return;
        }
    }
}

bool FileReplacement::Fail() {
    m_error = SystemError(errno);
    return false;
}

bool FileReplacement::Sync() {
    if (m_isSynced || m_lasting != Lasting::ForGood) {
        return true;
    }
    if (m_descriptor < 0) {
        m_descriptor = open(m_hiddenPath.c_str(), O_WRONLY | O_NOFOLLOW | O_CLOEXEC);
        if (m_descriptor < 0) {
            return Fail();
        }
        ++descriptorsKept;
    }
    if (m_writeThrough != nullptr) {
        m_writeThrough->Remove(m_descriptor);
    }
    errno = SyncFile(m_descriptor);
    m_isSynced = errno == 0;
    return m_isSynced || Fail();
}

bool FileReplacement::LinkTo(const std::string& path) const {
    // The one flag makes it the file that the descriptor stands for.
    return linkat(AT_FDCWD, m_path.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

// A link never replaces what is there: then a hidden name comes first.
bool FileReplacement::Link() {
    if (!m_permissions && LinkTo(m_target)) {
        return true;
    }
    m_hold = FolderHold::Of(FolderOf(m_target));
    std::string path = HiddenNameBeside(m_target);
    for (int attempt = 1; !LinkTo(path); ++attempt) {
        if (errno != EEXIST || attempt == kAttempts) {
            return Fail();
        }
        path = HiddenNameBeside(m_target);
    }
    m_hiddenPath = path;
    return true;
}

bool FileReplacement::Commit() {
    if (!Sync() || (m_hiddenPath.empty() && !Link())) {
        return false;
    }
    if (!m_hiddenPath.empty() && std::rename(m_hiddenPath.c_str(), m_target.c_str()) != 0) {
        return Fail();
    }
    m_hiddenPath.clear();
    m_path.clear();
    m_hold.reset();
    CloseDescriptor();
    if (m_lasting == Lasting::ForGood) {
        SyncFoldersOf({m_target});
    }
    return true;
}
