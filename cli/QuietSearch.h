#pragma once

#include "cli/HeadlessKlipra.h"
#include "cli/Operands.h"
#include "engine/QuietStretches.h"

#include <vector>

/// What is to be found.
struct QuietThresholds {
    LevelOperand level;
    float seconds = 0.0F; ///< that a quiet place lasts at least

    /// What the options --level and --time say. Throws UsageError.
    static QuietThresholds From(const Arguments& arguments);
};

/// Finds the quiet places of a file, from the first to the last block, with progress.
/// Where there is none a terminal is told the quietest level that there is.
/// @param found  out: in order
/// @return false after a failure, which has been reported: what could not be read may be quiet
[[nodiscard]] bool FindQuietPlaces(const HeadlessKlipra& engine, const QuietThresholds& thresholds,
                                   std::vector<QuietStretch>& found);
