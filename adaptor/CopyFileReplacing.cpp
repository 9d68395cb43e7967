#include "adaptor/CopyFileReplacing.h"

#include "platform/FileReplacement.h"

#include <filesystem>

bool CopyFileReplacing(const std::string& from, const std::string& to) {
    namespace fs = std::filesystem;
    std::error_code error;
    if (!fs::is_regular_file(from, error) || fs::equivalent(from, to, error)) {
        return false;
    }
    FileReplacement replacement(to, from);
    const std::string& path = replacement.GetPath();
    if (path.empty()) {
        return false;
    }
    const fs::perms permissions = fs::status(path, error).permissions();
    if (error || !fs::copy_file(from, path, fs::copy_options::overwrite_existing, error)) {
        return false;
    }
    fs::permissions(path, permissions, error); // the copy took over those of its source
    return replacement.Commit();
}
