#include "platform/RegularFile.h"

#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t kPermissions = 0666; // of a new file, less what the user's mask takes away

// Each of these two answers an error number, 0 for none.

int CheckRegular(int descriptor) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0) {
        return errno;
    }
    return S_ISREG(status.st_mode) ? 0 : S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
}

// Only a file that holds something is truncated: file systems take a truncated file for one that is
// being rewritten, and write all of it to the disk when it is closed.
int Empty(int descriptor) {
    struct stat status {};
    const bool isEmptied =
        fstat(descriptor, &status) == 0 &&
        (!S_ISREG(status.st_mode) || status.st_size == 0 || ftruncate(descriptor, 0) == 0);
    return isEmptied ? 0 : errno;
}

/// @param prepare  what is done with the descriptor before it becomes a file
FilePointer Open(const char* path, int flags, const char* mode, int (*prepare)(int descriptor)) {
    const int descriptor = open(path, flags | O_CLOEXEC, kPermissions);
    if (descriptor < 0) {
        return nullptr;
    }
    int error = prepare(descriptor);
    FilePointer file(error == 0 ? fdopen(descriptor, mode) : nullptr);
    if (file == nullptr) {
        error = error == 0 ? errno : error;
        close(descriptor);
        errno = error;
    }
    return file;
}

} // namespace

FilePointer OpenRegularFile(const char* path) {
    return Open(path, O_RDONLY | O_NONBLOCK, "rb", CheckRegular);
}

FilePointer OpenForWriting(const char* path) {
    // Nobody but the kernel makes the links there.
    const bool isOwn = std::string_view(path).starts_with(kOwnDescriptors);
    return Open(path, isOwn ? O_WRONLY : O_WRONLY | O_CREAT | O_NOFOLLOW, "wb", Empty);
}
