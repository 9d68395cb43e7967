#include "platform/FollowLink.h"

#include <filesystem>

std::string FollowLink(const std::string& path) {
    namespace fs = std::filesystem;
    std::error_code error;
    if (!fs::is_symlink(fs::symlink_status(path, error))) {
        return path;
    }
    const fs::path target = fs::canonical(path, error);
    return error ? "" : target.string();
}
