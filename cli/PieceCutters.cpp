#include "cli/PieceCutters.h"

#include "cli/Operands.h"
#include "cli/Report.h"
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

// How long a source is need not be known to cut it: what was left of it tells whether each range
// held audio, and whether anything is left but the frames at the borders.
bool CheckRemoval(const std::string& source, FormatType format, const Piece& piece,
                  const CutSummary& summary) {
    // Of an MP3 the frame behind the last one left may have been the last of all.
    const long long unitsToEnd = format == FormatType::MP3 ? 2 : 1;
    const long long last = summary.runs.back().first + summary.runs.back().count - 1;
    const double end = static_cast<double>(last + unitsToEnd) * summary.unitSeconds;
    const std::vector<CutRange> removed = MergedRanges(CutRanges(piece));
    const bool isNothingLeft =
        removed.front().start <= 0.0 &&
        static_cast<double>(last) * summary.unitSeconds < removed.front().end;
    const bool isBehind = removed.back().start >= end;
    if (isNothingLeft || isBehind) {
        ReportError(source, DescribeFailure(isNothingLeft ? CutReason::NothingLeft
                                                          : CutReason::NoAudioInRange));
    }
    return !isNothingLeft && !isBehind;
}
