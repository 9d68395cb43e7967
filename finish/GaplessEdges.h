#pragma once

#include <optional>

/// The delay that a decoder adds itself, sample frames: what an encoder's tag tells is without it.
inline constexpr long long kDecoderDelay = 529;

/// What a header tells of the silence that the encoder has added, sample frames.
struct EncoderGap {
    unsigned int delay = 0;
    unsigned int padding = 0;
};

/// Sample frames [begin, end) of an untrimmed decode.
struct SampleSpan {
    long long begin = 0;
    long long end = 0;
};

/// Which part of a file is music, and not silence that the encoder has added.
/// @param gap            as its header tells; none: all of it
/// @param frames         whole ones that there are
/// @param countedFrames  that the header counts; 0 for none. Where there are fewer, the padding
///                       lies in those that are missing; where there are more, it is unknown
SampleSpan MusicOf(const std::optional<EncoderGap>& gap, long long frames, long long countedFrames,
                   unsigned int samplesPerFrame);

/// What the header of a result has to tell, so that a player begins and ends where it should.
/// @param wanted  of the source: its first and its last sample frame
/// @param frames  of the source: where the result's first frame begins, and where its last one ends
EncoderGap GapAround(const SampleSpan& wanted, const SampleSpan& frames);
