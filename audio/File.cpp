#include "audio/File.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

std::int64_t Nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

} // namespace

std::shared_ptr<const File> File::Open(const char* path) {
    FilePointer file = OpenRegularFile(path);
    return file ? std::shared_ptr<const File>(new File(std::move(file))) : nullptr;
}

File::File(FilePointer file) : m_file(std::move(file)), m_state(CurrentState()) {
}

int File::Descriptor() const {
    return fileno(m_file.get());
}

FileState File::CurrentState() const {
    struct stat status {};
    if (fstat(Descriptor(), &status) != 0) {
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
        const ssize_t count = pread(Descriptor(), static_cast<char*>(to) + done, bytes - done,
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
