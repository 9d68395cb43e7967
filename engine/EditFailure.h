#pragma once

#include "cutting/CutFailure.h"

/// Why an edit or a save failed, or has not been begun.
struct EditFailure {
    CutProblem problem{};       ///< its path is the source or the target; None: nothing failed
    long long missingBytes = 0; ///< above 0: the disk lacks so many, so nothing was written

    bool IsCancelled() const { return problem.reason == CutReason::Cancelled; }
};
