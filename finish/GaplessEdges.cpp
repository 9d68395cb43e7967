#include "finish/GaplessEdges.h"

#include <algorithm>

namespace {

constexpr long long kMaxGap = 4095; // twelve bits

unsigned int Stored(long long gap) {
    return static_cast<unsigned int>(std::clamp(gap, 0LL, kMaxGap));
}

} // namespace

SampleSpan MusicOf(const std::optional<EncoderGap>& gap, long long frames, long long countedFrames,
                   unsigned int samplesPerFrame) {
    const long long whole = frames * samplesPerFrame;
    if (!gap) {
        return {0, whole};
    }
    const long long padding = std::max(0LL, gap->padding - kDecoderDelay);
    const long long begin = std::min(gap->delay + kDecoderDelay, whole);
    const bool isOfAnother = countedFrames != 0 && countedFrames < frames;
    const long long counted = countedFrames == 0 ? frames : countedFrames;
    const long long end =
        isOfAnother ? whole : std::min(whole, counted * samplesPerFrame - padding);
    return {begin, std::max(begin, end)};
}

EncoderGap GapAround(const SampleSpan& wanted, const SampleSpan& frames) {
    return {Stored(wanted.begin - frames.begin - kDecoderDelay),
            Stored(frames.end - wanted.end + kDecoderDelay)};
}
