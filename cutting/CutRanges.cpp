#include "cutting/CutRanges.h"

#include <algorithm>

std::vector<CutRange> MergedRanges(std::span<const CutRange> ranges) {
    std::vector<CutRange> merged(ranges.begin(), ranges.end());
    std::ranges::sort(merged, {}, &CutRange::start);
    auto last = merged.begin();
    for (auto range = merged.begin(); range != merged.end(); ++range) {
        if (range->start <= last->end) {
            last->end = std::max(last->end, range->end);
        } else {
            *++last = *range;
        }
    }
    merged.erase(merged.empty() ? last : last + 1, merged.end());
    return merged;
}
