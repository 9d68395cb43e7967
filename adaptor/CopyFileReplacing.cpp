#include "adaptor/CopyFileReplacing.h"

#include "platform/FileReplacement.h"
#include "platform/RegularFile.h"

#include <filesystem>
#include <vector>

namespace {

/// @return whether every byte that the file has now has arrived
bool CopyBytes(std::FILE* from, const std::string& to) {
    constexpr std::size_t kPieceBytes = std::size_t{256} * 1024;
    FilePointer output = OpenForWriting(to.c_str());
    if (output == nullptr) {
        return false;
    }
    std::vector<char> piece(kPieceBytes);
    std::size_t count = 0;
    do {
        count = std::fread(piece.data(), 1, piece.size(), from);
    } while (count > 0 && std::fwrite(piece.data(), 1, count, output.get()) == count);
    const bool isComplete = count == 0 && std::ferror(from) == 0;
    return std::fclose(output.release()) == 0 && isComplete;
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
