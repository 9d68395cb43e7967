#include "cli/OutputTargets.h"

#include "cli/Report.h"
#include "places/PrintableText.h"
#include "platform/FollowLink.h"
#include "platform/SystemError.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <map>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

// What is wrong with a target, as it is to be said of it; empty when nothing is.
std::string Problem(const std::string& source, const std::string& path, bool replacesNothing) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (fs::exists(status)) {
        if (fs::equivalent(source, path, error)) {
            return "this is the input itself";
        }
        if (replacesNothing) {
            return "exists, and is not to be replaced";
        }
        if (fs::is_directory(status)) {
            return SystemErrorText(EISDIR);
        }
        if (!fs::is_regular_file(status)) {
            return "is no regular file";
        }
        return faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0 ? ""
                                                                        : SystemErrorText(errno);
    }
    const fs::path folder = fs::path(path).parent_path();
    return faccessat(AT_FDCWD, folder.empty() ? "." : folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0
               ? ""
               : SystemErrorText(errno);
}

/// Tells when two names are the same file, whether it exists yet or not.
class SameFiles {
public:
    /// @return the name that was the same file, or an empty one
    std::string Add(const std::string& name, const std::string& path) {
        struct stat status {};
        if (stat(path.c_str(), &status) == 0) {
            return Insert(m_existing, std::pair(status.st_dev, status.st_ino), name);
        }
        std::error_code error;
        return Insert(m_absent, fs::weakly_canonical(path, error).string(), name);
    }

private:
    template <typename Key>
    static std::string Insert(std::map<Key, std::string>& known, const Key& key,
                              const std::string& name) {
        const auto [place, isNew] = known.emplace(key, name);
        return isNew ? "" : place->second;
    }

    std::map<std::pair<dev_t, ino_t>, std::string> m_existing;
    std::map<std::string, std::string> m_absent;
};

} // namespace

bool OutputTargets::Check(const std::string& source, const std::vector<std::string>& names,
                          bool replacesNothing) {
    m_paths.clear();
    SameFiles files;
    for (const std::string& name : names) {
        std::string& path = m_paths.emplace_back();
        path = FollowLink(name);
        if (path.empty()) {
            ReportError(name, "is a link that leads nowhere");
            return false;
        }
        const std::string problem = Problem(source, path, replacesNothing);
        if (!problem.empty()) {
            ReportError(name, problem);
            return false;
        }
        const std::string same = files.Add(name, path);
        if (!same.empty()) {
            ReportError(name, "is the same file as " + Quoted(same));
            return false;
        }
    }
    return true;
}
