#pragma once

#include <string>
#include <vector>

/// Consecutive units of a source: MPEG frames, from 0 and without that of a VBR header, or sample
/// frames of a WAV.
struct CutRun {
    long long first = 0;
    long long count = 0;
};

/// What a cut has put into one output.
struct CutSummary {
    std::string path;          ///< the output, as the cutter was given it
    double unitSeconds = 0.0;  ///< that one unit plays
    std::vector<CutRun> runs;  ///< in the order of the output
    long long unitSamples = 1; ///< of each channel, in one unit
    long long unheard = 0;     ///< units besides, for what the runs need of earlier frames
};

/// What the last cut has written, an entry for each output; to be read when it has succeeded.
const std::vector<CutSummary>& CutSummaries();

// For the cutters.

void ResetCutSummaries();
void BeginCutSummary(const std::string& path, double unitSeconds, long long unitSamples = 1);
/// So many more units, of the output that was begun last.
void AddToCutSummary(long long first, long long count);
void SetUnheardOfCutSummary(long long count);
