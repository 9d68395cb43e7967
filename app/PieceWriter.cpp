#include "app/PieceWriter.h"

#include "cutting/CutError.h"
#include "cutting/CutMP3.h"
#include "cutting/CutWholeWAV.h"
#include "platform/FileReplacement.h"
#include "platform/FollowLink.h"
#include "platform/SyncFiles.h"

#include <algorithm>
#include <cerrno>
#include <deque>

namespace {

EditFailure NotCreatable(const std::string& path, int error) {
    return {{CutReason::OutputNotCreatable, path, error}};
}

/// Makes a new file for each target.
bool MakeReplacements(const std::string& source, const std::vector<std::string>& targets,
                      std::deque<FileReplacement>& replacements, EditFailure& failure) {
    for (const std::string& target : targets) {
        const FileReplacement& made = replacements.emplace_back(target, source, Lasting::Grouped);
        if (made.GetPath().empty()) {
            failure = NotCreatable(target, made.GetError().value());
            return false;
        }
    }
    return true;
}

bool CommitAll(const std::vector<std::string>& targets, std::deque<FileReplacement>& replacements,
               const FileSystemSync& fileSystems, EditFailure& failure) {
    if (const int error = fileSystems.Sync(); error != 0) {
        failure = {{CutReason::OutputNotWritable, targets.front(), error}};
        return false;
    }
    for (std::size_t i = 0; i < targets.size(); ++i) {
        if (!replacements[i].Commit()) {
            failure = NotCreatable(targets[i], replacements[i].GetError().value());
            return false;
        }
    }
    SyncFoldersOf(targets);
    return true;
}

} // namespace

std::vector<std::string> PieceNames(const std::string& path, std::size_t count) {
    const std::size_t name = path.rfind('/') + 1; // npos + 1 is 0
    std::size_t place = path.rfind('%');
    const bool hasMark = place != std::string::npos && place >= name;
    if (!hasMark) {
        place = std::max(path.rfind('.'), name);
        place = place == std::string::npos ? path.size() : place;
    }
    const std::string before = path.substr(0, place) + (hasMark ? "" : "-");
    const std::string behind = path.substr(hasMark ? place + 1 : place);
    const std::size_t width = std::to_string(count).size();
    std::vector<std::string> names;
    for (std::size_t i = 1; i <= count; ++i) {
        const std::string number = std::to_string(i);
        names.push_back(before + std::string(width - number.size(), '0') + number + behind);
    }
    return names;
}

bool WritePieces(const std::string& source, FormatType format, const std::vector<double>& bounds,
                 const std::vector<std::string>& names, EditFailure& failure) {
    failure = {};
    std::vector<std::string> targets;
    std::ranges::transform(names, std::back_inserter(targets), FollowLink);
    if (const auto lost = std::ranges::find(targets, ""); lost != targets.end()) {
        failure = NotCreatable(names[static_cast<std::size_t>(lost - targets.begin())], ENOENT);
        return false;
    }
    std::deque<FileReplacement> replacements;
    if (!MakeReplacements(source, targets, replacements, failure)) {
        return false;
    }
    std::vector<CutPiece> pieces;
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < replacements.size(); ++i) {
        paths.push_back(replacements[i].GetPath());
        pieces.push_back({paths.back(), {bounds[i], bounds[i + 1]}});
    }
    const FileSystemSync fileSystems(paths);
    ResetCutFailure();
    const bool isCut = format == FormatType::MP3 ? CutMP3Pieces(source.c_str(), pieces)
                                                 : CutWAVPieces(source.c_str(), pieces);
    if (!isCut) {
        failure.problem = CutFailure();
    }
    return isCut && CommitAll(targets, replacements, fileSystems, failure);
}
