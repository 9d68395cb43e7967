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

File::File(FilePointer file)
    : m_file(std::move(file)), m_state(CurrentState()), m_failures(ReadFailures::Of(m_state)) {
}

FileState File::CurrentState() const {
    struct stat status {};
    if (fstat(fileno(m_file.get()), &status) != 0) {
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

File::ReadResult File::ReadAt(std::int64_t offset, void* to, std::size_t bytes) const {
    ReadResult result;
    while (result.bytes < bytes) {
        const ssize_t count =
            pread(fileno(m_file.get()), static_cast<char*>(to) + result.bytes, bytes - result.bytes,
                  offset + static_cast<std::int64_t>(result.bytes));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            result.error = count < 0 ? errno : 0;
            break;
        }
        result.bytes += static_cast<std::size_t>(count);
    }
    return result;
}
