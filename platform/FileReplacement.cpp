#include "platform/FileReplacement.h"

#include "platform/SystemError.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t kMostPermissions = 0666; // of a new file, less what the user's mask takes away
constexpr int kAttempts = 100;

std::string HiddenNameBeside(const std::string& target) {
    std::random_device random;
    const std::string name = FileReplacement::HiddenPrefix() + std::to_string(random());
    return std::filesystem::path(target).replace_filename(name).string();
}

mode_t PermissionsLike(const std::string& source) {
    struct stat status {};
    return stat(source.c_str(), &status) == 0 ? status.st_mode & kMostPermissions
                                              : kMostPermissions;
}

} // namespace

std::string FileReplacement::HiddenPrefix() {
    return ".klipra-" + std::to_string(getpid()) + "-";
}

FileReplacement::FileReplacement(const std::string& target, const std::string& source)
    : m_target(target) {
    if (CheckTarget()) {
        Create(source);
    }
}

FileReplacement::~FileReplacement() {
    if (!m_path.empty()) {
        unlink(m_path.c_str());
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
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const std::string path = HiddenNameBeside(m_target);
        const int descriptor =
            open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, permissions);
        if (descriptor >= 0) {
            m_path = path;
            m_error.clear();
            if (m_permissions) {
                fchmod(descriptor,
                       *m_permissions); // a file system without permissions is no reason to fail
            }
            close(descriptor);
            return;
        }
        m_error = SystemError(errno);
        if (errno != EEXIST) {
            return;
        }
    }
}

bool FileReplacement::Commit() {
    if (std::rename(m_path.c_str(), m_target.c_str()) != 0) {
        m_error = SystemError(errno);
        return false;
    }
    m_path.clear();
    return true;
}
