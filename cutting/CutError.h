#pragma once

#include "cutting/CutFailure.h"

/// Thrown by the cutters to themselves: ends a cut. Its catcher knows the file at fault.
struct CutError {
    CutReason reason;
    int errorNumber = 0;
    std::string path = {}; // the file at fault; empty for the source
};

/// A new cut begins, of which nothing bad is known.
void ResetCutFailure();

/// What CutFailure returns from now on, unless a failure of this cut is known
/// already. The error number may make another reason of it: an output that cannot be written
/// because the disk is full. That the source has changed explains what was wrong with it before.
void SetCutFailure(CutReason reason, const std::string& path, int errorNumber = 0);

/// Adds a warning.
void AddCutWarning(CutWarning warning);
