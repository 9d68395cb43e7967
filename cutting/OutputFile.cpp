#include "cutting/OutputFile.h"

#include "platform/SystemError.h"

#include <cerrno>
#include <fcntl.h>
#include <stdio_ext.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::size_t kBufferBytes = 256 * 1024;
constexpr mode_t kPermissions = 0666; // less what the user's mask takes away

std::string failure; // main thread, as the cutters

bool IsSameFile(const char* a, const char* b) {
    struct stat first {};
    struct stat second {};
    return stat(a, &first) == 0 && stat(b, &second) == 0 && first.st_dev == second.st_dev &&
           first.st_ino == second.st_ino;
}

bool IsDevice(std::FILE* file) {
    struct stat status {};
    return fstat(fileno(file), &status) == 0 &&
           (S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode));
}

// As with mode "wb", but only a file that holds something is truncated: file systems take a
// truncated file for one that is being rewritten, and write all of it to the disk when it is
// closed.
int OpenEmptied(const char* path) {
    const int descriptor = open(path, O_WRONLY | O_CREAT | O_CLOEXEC, kPermissions);
    struct stat status {};
    if (descriptor >= 0 && fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
        status.st_size > 0 && ftruncate(descriptor, 0) != 0) {
        close(descriptor);
        return -1;
    }
    return descriptor;
}

} // namespace

const std::string& CutFailure() {
    return failure;
}

void SetCutFailure(const std::string& reason) {
    failure = reason;
}

OutputFile::OutputFile(const char* path, const char* source) : m_path(path) {
    if (IsSameFile(path, source)) {
        errno = EEXIST;
        return;
    }
    const int descriptor = OpenEmptied(path);
    m_file = descriptor < 0 ? nullptr : fdopen(descriptor, "wb");
    if (m_file != nullptr) {
        m_buffer = std::make_unique_for_overwrite<char[]>(kBufferBytes);
        static_cast<void>(std::setvbuf(m_file, m_buffer.get(), _IOFBF, kBufferBytes));
        __fsetlocking(m_file, FSETLOCKING_BYCALLER); // one thread writes, a frame at a time
    }
}

OutputFile::~OutputFile() {
    if (m_file != nullptr) {
        Close(false);
    }
}

bool OutputFile::Close(bool cutSucceeded) {
    // A device is not ours to delete.
    const bool isDevice = IsDevice(m_file);
    const bool arrived = std::ferror(m_file) == 0;
    const bool closed = std::fclose(m_file) == 0;
    m_file = nullptr;
    if (cutSucceeded && arrived && closed) {
        return true;
    }
    if (!arrived || !closed) {
        SetCutFailure("cannot write the output: " + SystemErrorText(errno));
    }
    if (!isDevice) {
        unlink(m_path.c_str());
    }
    return false;
}
