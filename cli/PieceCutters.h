#pragma once

#include "cli/Pieces.h"
#include "cutting/CutFailure.h"
#include "cutting/CutProgress.h"
#include "cutting/CutSummary.h"

#include <string>
#include <vector>

/// What cutting the pieces has found and written.
struct CutOutcome {
    std::vector<CutSummary> summaries; ///< one for each piece, in their order
    std::vector<CutWarning> warnings;
};

/// Cuts each piece to a path of its own, with the cutter that the format and the pieces call for:
/// an MP3 in one walk.
/// @return false after a failure, which has been reported or stands in CutFailure
[[nodiscard]] bool CutPieces(const std::string& source, FormatType format,
                             const std::vector<Piece>& pieces,
                             const std::vector<std::string>& paths, CutOutcome& outcome);

/// Whether each range that was removed held audio, and anything is left but the frames at the
/// borders.
/// @return false when not, which has been reported
[[nodiscard]] bool CheckRemoval(const std::string& source, FormatType format, const Piece& piece,
                                const CutSummary& summary);
