#include "adaptor/CopyFileReplacing.h"

#include "platform/FileReplacement.h"
#include "platform/RegularFile.h"

#include <filesystem>
#include <sys/sendfile.h>

namespace {

/// @return whether every byte that the file has now has arrived
bool CopyBytes(std::FILE* from, const std::string& to) {
    constexpr std::size_t kPieceBytes = std::size_t{1} << 24;
    FilePointer output = OpenForWriting(to.c_str());
    if (output == nullptr) {
        return false;
    }
    ssize_t sent = 0;
    do {
        sent = sendfile(fileno(output.get()), fileno(from), nullptr, kPieceBytes);
    } while (sent > 0);
    return std::fclose(output.release()) == 0 && sent == 0;
}

} // namespace

bool CopyFileReplacing(const std::string& from, const std::string& to) {
    const FilePointer source = OpenRegularFile(from.c_str());
    std::error_code error;
    if (source == nullptr || std::filesystem::equivalent(from, to, error)) {
        return false;
    }
    FileReplacement replacement(to, from);
    const std::string& path = replacement.GetPath();
    return !path.empty() && CopyBytes(source.get(), path) && replacement.Commit();
}
