#include "audio/File.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::int64_t Nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

bool IsRegular(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
}

} // namespace

std::shared_ptr<const File> File::Open(const char* path) {
    // Without O_NONBLOCK the opening of a pipe would wait for a writer.
    const int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return nullptr;
    }
    std::shared_ptr<const File> file(new File(descriptor));
    return IsRegular(descriptor) ? file : nullptr;
}

File::File(int descriptor) : m_descriptor(descriptor), m_state(CurrentState()) {
}

File::~File() {
    close(m_descriptor);
}

FileState File::CurrentState() const {
    struct stat status {};
    if (fstat(m_descriptor, &status) != 0) {
        return {};
    }
#ifdef __APPLE__
    const timespec &modified = status.st_mtimespec, &changed = status.st_ctimespec;
#else
    const timespec &modified = status.st_mtim, &changed = status.st_ctim;
#endif
    return {static_cast<std::int64_t>(status.st_dev), static_cast<std::int64_t>(status.st_ino),
            status.st_size, Nanoseconds(modified), Nanoseconds(changed)};
}

std::size_t File::ReadAt(std::int64_t offset, void* to, std::size_t bytes) const {
    std::size_t done = 0;
    while (done < bytes) {
        const ssize_t count = pread(m_descriptor, static_cast<char*>(to) + done, bytes - done,
                                    offset + static_cast<std::int64_t>(done));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            break;
        }
        done += static_cast<std::size_t>(count);
    }
    return done;
}
