#include "platform/RegularFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

FilePointer OpenRegularFile(const char* path) {
    const int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        return nullptr;
    }
    struct stat status {};
    int error = 0;
    if (fstat(descriptor, &status) != 0) {
        error = errno;
    } else if (S_ISDIR(status.st_mode)) {
        error = EISDIR;
    } else if (!S_ISREG(status.st_mode)) {
        error = EINVAL;
    }
    FilePointer file(error == 0 ? fdopen(descriptor, "rb") : nullptr);
    if (file == nullptr) {
        error = error == 0 ? errno : error;
        close(descriptor);
        errno = error;
    }
    return file;
}
