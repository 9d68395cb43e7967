#include "cli/PieceCutters.h"

#include "cli/Operands.h"
#include "cutting/CutMP3.h"
#include "cutting/CutWholeWAV.h"

namespace {

std::vector<CutRange> CutRanges(const Piece& piece) {
    std::vector<CutRange> ranges;
    for (const TimeRange& range : piece.ranges) {
        ranges.push_back({range.begin, range.end});
    }
    return ranges;
}

std::vector<CutPiece> CutPieces(const std::vector<Piece>& pieces,
                                const std::vector<std::string>& paths) {
    std::vector<CutPiece> cuts;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        cuts.push_back({paths[i], CutRanges(pieces[i]).front()});
    }
    return cuts;
}

bool CutMP3(const std::string& source, const std::vector<Piece>& pieces,
            const std::vector<std::string>& paths) {
    const Piece& first = pieces.front();
    if (pieces.size() == 1 && first.ranges.size() == 1) {
        const TimeRange& range = first.ranges.front();
        return CutMP3WholeFrames(source.c_str(), paths.front().c_str(), ToFloat(range.begin),
                                 ToFloat(range.end), first.keep);
    }
    if (!first.keep) {
        return CutMP3AllBut(source.c_str(), paths.front().c_str(), CutRanges(first));
    }
    return CutMP3Pieces(source.c_str(), CutPieces(pieces, paths));
}

bool CutWAV(const std::string& source, const std::vector<Piece>& pieces,
            const std::vector<std::string>& paths) {
    const Piece& first = pieces.front();
    return first.keep ? CutWAVPieces(source.c_str(), CutPieces(pieces, paths))
                      : CutWAVAllBut(source.c_str(), paths.front().c_str(), CutRanges(first));
}

} // namespace

bool CutPieces(const std::string& source, FormatType format, const std::vector<Piece>& pieces,
               const std::vector<std::string>& paths, CutOutcome& outcome) {
    const bool isCut =
        format == FormatType::MP3 ? CutMP3(source, pieces, paths) : CutWAV(source, pieces, paths);
    outcome = {CutSummaries(), CutWarnings()};
    return isCut;
}
