#include "cutting/OutputFile.h"

#include "cutting/CutError.h"

#include <cerrno>
#include <stdio_ext.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::size_t kBufferBytes = 256 * 1024;

bool IsSameFile(const char* a, const char* b) {
    struct stat first {};
    struct stat second {};
    return stat(a, &first) == 0 && stat(b, &second) == 0 && first.st_dev == second.st_dev &&
           first.st_ino == second.st_ino;
}

bool IsDevice(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && (S_ISCHR(status.st_mode) || S_ISBLK(status.st_mode));
}

} // namespace

OutputFile::OutputFile(const char* path, const char* source) : m_path(path) {
    if (IsSameFile(path, source)) {
        errno = EEXIST;
        return;
    }
    m_file = OpenForWriting(path);
    if (m_file != nullptr) {
        m_buffer = std::make_unique_for_overwrite<char[]>(kBufferBytes);
        static_cast<void>(std::setvbuf(m_file.get(), m_buffer.get(), _IOFBF, kBufferBytes));
        // One thread writes, a frame at a time.
        __fsetlocking(m_file.get(), FSETLOCKING_BYCALLER);
    }
}

OutputFile::~OutputFile() {
    if (m_file != nullptr) {
        Close(false);
    }
}

bool OutputFile::Close(bool cutSucceeded) {
    const bool arrived = std::ferror(m_file.get()) == 0;
    const bool closed = std::fclose(m_file.release()) == 0;
    if (cutSucceeded && arrived && closed) {
        return true;
    }
    if (!arrived || !closed) {
        SetCutFailure(CutReason::OutputNotWritable, m_path, errno);
    }
    RemoveOutput(m_path);
    return false;
}

void RemoveOutput(const std::string& path) {
    if (!IsDevice(path)) {
        unlink(path.c_str());
    }
}
