#include "platform/FileState.h"

#include <sys/stat.h>

namespace {

std::int64_t Nanoseconds(const timespec& time) {
    return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

FileState ToState(const struct stat& status) {
#ifdef __APPLE__
    const timespec &modified = status.st_mtimespec, &changed = status.st_ctimespec;
#else
    const timespec &modified = status.st_mtim, &changed = status.st_ctim;
#endif
    return {static_cast<std::int64_t>(status.st_dev), static_cast<std::int64_t>(status.st_ino),
            status.st_size, Nanoseconds(modified), Nanoseconds(changed)};
}

} // namespace

FileState StateOf(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 ? ToState(status) : FileState();
}

FileState StateOf(const char* path) {
    struct stat status {};
    return stat(path, &status) == 0 ? ToState(status) : FileState();
}
