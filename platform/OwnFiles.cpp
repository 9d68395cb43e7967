#include "platform/OwnFiles.h"

#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

std::vector<std::string> OwnFilesIn(const std::string& folder,
                                    const std::function<bool(const std::string& name)>& isChosen) {
    namespace fs = std::filesystem;
    std::vector<std::string> found;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        struct stat status {};
        if (isChosen(name) && lstat(entry->path().c_str(), &status) == 0 &&
            S_ISREG(status.st_mode) && status.st_uid == geteuid()) {
            found.push_back(name);
        }
    }
    return found;
}

void RemoveOwnFiles(const std::string& folder,
                    const std::function<bool(const std::string& name)>& isChosen) {
    // All names first: what a listing does while files go away is not defined.
    for (const std::string& name : OwnFilesIn(folder, isChosen)) {
        unlink((folder + "/" + name).c_str());
    }
}
