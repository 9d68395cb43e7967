#include "comparing/Comparison.h"

long long CountFrames(const std::vector<FrameRun>& stretches) {
    long long count = 0;
    for (const FrameRun& stretch : stretches) {
        count += stretch.end - stretch.begin;
    }
    return count;
}

long long Comparison::CountFrames() const {
    long long count = ::CountFrames(altered) + ::CountFrames(foreign);
    for (const Run& run : runs) {
        count += run.count;
    }
    return count;
}

void AppendFrame(std::vector<FrameRun>& stretches, long long frame) {
    if (stretches.empty() || stretches.back().end != frame) {
        stretches.push_back({frame, frame});
    }
    ++stretches.back().end;
}
