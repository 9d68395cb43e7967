#include "adaptor/CopyFileReplacing.h"

#include "cutting/CutError.h"
#include "cutting/CutWork.h"
#include "platform/FileReplacement.h"
#include "platform/FileState.h"
#include "platform/RegularFile.h"

#include <cerrno>
#include <filesystem>
#include <vector>

namespace {

/// Throws CutError unless every byte that the file has now has arrived.
void CopyBytes(std::FILE* from, const std::string& to) {
    constexpr std::size_t kPieceBytes = std::size_t{256} * 1024;
    FilePointer output = OpenForWriting(to.c_str());
    if (output == nullptr) {
        throw CutError{CutReason::OutputNotCreatable, errno, to};
    }
    std::vector<char> piece(kPieceBytes);
    const FileState before = StateOf(fileno(from));
    BeginWork(before.sizeBytes);
    while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), from)) {
        if (std::fwrite(piece.data(), 1, count, output.get()) != count) {
            throw CutError{CutReason::OutputNotWritable, errno, to};
        }
        AddWork(static_cast<long long>(count));
    }
    if (std::ferror(from) != 0) {
        throw CutError{CutReason::SourceUnreadable, errno};
    }
    if (std::fclose(output.release()) != 0) {
        throw CutError{CutReason::OutputNotWritable, errno, to};
    }
    EndWork();
    if (StateOf(fileno(from)) != before) {
        throw CutError{CutReason::SourceChanged};
    }
}

void Copy(const std::string& from, const std::string& to) {
    const FilePointer source = OpenRegularFile(from.c_str());
    if (source == nullptr) {
        throw CutError{CutReason::SourceUnreadable, errno};
    }
    std::error_code error;
    if (std::filesystem::equivalent(from, to, error)) {
        throw CutError{CutReason::OutputNotCreatable, EEXIST, to};
    }
    FileReplacement replacement(to, from, Lasting::ForGood);
    if (!replacement.GetPath().empty()) {
        CopyBytes(source.get(), replacement.GetPath());
    }
    if (replacement.GetPath().empty() || !replacement.Commit()) {
        throw CutError{CutReason::OutputNotCreatable, replacement.GetError().value(), to};
    }
}

} // namespace

bool CopyFileReplacing(const std::string& from, const std::string& to) {
    ResetCutFailure();
    try {
        Copy(from, to);
        return true;
    } catch (const CutError& error) {
        const bool isAboutSource = error.path.empty();
        SetCutFailure(error.reason, isAboutSource ? from : to, error.errorNumber);
        return false;
    }
}
