#include "platform/LockFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

/// @return a descriptor of the file, locked; -1 when that cannot be had
int OpenLocked(const std::string& path) {
    const int descriptor = open(
        path.c_str(), O_CREAT | O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR);
    struct stat opened {};
    struct stat named {};
    // Whoever had it before may have removed it since it was opened.
    if (descriptor >= 0 && flock(descriptor, LOCK_EX | LOCK_NB) == 0 &&
        fstat(descriptor, &opened) == 0 && stat(path.c_str(), &named) == 0 &&
        opened.st_ino == named.st_ino && opened.st_dev == named.st_dev && S_ISREG(opened.st_mode) &&
        opened.st_uid == geteuid()) {
        return descriptor;
    }
    if (descriptor >= 0) {
        close(descriptor);
    }
    return -1;
}

} // namespace

LockFile::LockFile(std::string path) : m_path(std::move(path)), m_descriptor(OpenLocked(m_path)) {
}

LockFile::LockFile(LockFile&& other) noexcept
    : m_path(std::move(other.m_path)), m_descriptor(std::exchange(other.m_descriptor, -1)) {
}

LockFile& LockFile::operator=(LockFile&& other) noexcept {
    std::swap(m_path, other.m_path);
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
}

LockFile::~LockFile() {
    if (IsLocked()) {
        close(m_descriptor);
    }
}

void LockFile::Remove() const {
    if (IsLocked()) {
        unlink(m_path.c_str());
    }
}
