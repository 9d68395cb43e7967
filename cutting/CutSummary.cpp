#include "cutting/CutSummary.h"

namespace {

std::vector<CutSummary> summaries; // of the thread that cuts, one cut at a time

} // namespace

const std::vector<CutSummary>& CutSummaries() {
    return summaries;
}

void ResetCutSummaries() {
    summaries.clear();
}

void BeginCutSummary(const std::string& path, double unitSeconds, long long unitSamples) {
    summaries.push_back({path, unitSeconds, {}, unitSamples});
}

void AddToCutSummary(long long first, long long count) {
    std::vector<CutRun>& runs = summaries.back().runs;
    if (count > 0 && !runs.empty() && runs.back().first + runs.back().count == first) {
        runs.back().count += count;
    } else if (count > 0) {
        runs.push_back({first, count});
    }
}

void SetUnheardOfCutSummary(long long count) {
    summaries.back().unheard = count;
}
