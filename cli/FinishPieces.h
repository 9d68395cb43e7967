#pragma once

#include "cli/PieceCutters.h"

/// Cuts each piece so that joins play without a fault, headers are true, and whatever else the file
/// holds is right for what is left. See CutPieces.
[[nodiscard]] bool FinishPieces(const std::string& source, FormatType format,
                                const std::vector<Piece>& pieces,
                                const std::vector<std::string>& paths, CutOutcome& outcome);
