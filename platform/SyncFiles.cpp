#include "platform/SyncFiles.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace {

int SyncFileSystem(int descriptor) {
#ifdef __linux__
    return syncfs(descriptor) == 0 ? 0 : errno;
#else
    return descriptor < 0 ? EBADF : (sync(), 0);
#endif
}

} // namespace

FileSystemSync::FileSystemSync(const std::vector<std::string>& files) {
    for (const std::string& file : files) {
        struct stat status {};
        if (stat(file.c_str(), &status) != 0 || m_descriptors.contains(status.st_dev)) {
            continue;
        }
        if (const int descriptor = open(file.c_str(), O_WRONLY | O_CLOEXEC); descriptor >= 0) {
            m_descriptors[status.st_dev] = descriptor;
        }
    }
}

FileSystemSync::~FileSystemSync() {
    for (const auto& [device, descriptor] : m_descriptors) {
        close(descriptor);
    }
}

int FileSystemSync::Sync() const {
    int error = 0;
    for (const auto& [device, descriptor] : m_descriptors) {
        error = error == 0 ? SyncFileSystem(descriptor) : error;
    }
    return error;
}

void SyncFoldersOf(const std::vector<std::string>& paths) {
    std::set<std::string> folders;
    for (const std::string& path : paths) {
        folders.insert(FolderOf(path));
    }
    for (const std::string& folder : folders) {
        const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor >= 0) {
            fsync(descriptor);
            close(descriptor);
        }
    }
}

std::string FolderOf(const std::string& path) {
    const std::filesystem::path folder = std::filesystem::path(path).parent_path();
    return folder.empty() ? "." : folder.string();
}

int SyncFile(int descriptor) {
    return fsync(descriptor) == 0 || errno == EINVAL || errno == ENOSYS ? 0 : errno;
}
