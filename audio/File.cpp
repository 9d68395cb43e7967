#include "audio/File.h"

#include <cerrno>
#include <unistd.h>
#include <utility>

std::shared_ptr<const File> File::Open(const char* path) {
    FilePointer file = OpenRegularFile(path);
    return file ? std::shared_ptr<const File>(new File(std::move(file))) : nullptr;
}

File::File(FilePointer file)
    : m_file(std::move(file)), m_state(CurrentState()), m_failures(ReadFailures::Of(m_state)) {
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
