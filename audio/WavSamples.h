#pragma once

#include "audio/File.h"

#include <cstdint>
#include <optional>

/// Where the samples of a WAV file lie whose sizes libsndfile cannot tell: one with 64-bit sizes
/// (RF64, EBU Tech 3306; BW64, ITU-R BS.2088), or a RIFF file whose recorder did not live to write
/// its size, or wrote to a pipe.
struct WavSamples {
    std::uint16_t formatTag = 0; ///< 1, 3, 6 or 7; of an extensible format that of its sub-format
    std::uint16_t channels = 0;
    std::uint32_t rateHz = 0;
    std::uint32_t sampleBytes = 0; ///< of one sample of one channel
    std::int64_t offsetBytes = 0;
    std::int64_t sampleFrames = 0; ///< whole ones that are there
};

/// Finds the samples. A data size of 0, of 0xFFFFFFFF or beyond the file's end means all that
/// follows, as it does to the cutters.
/// @return nothing for a file with an ordinary size, and for one whose samples have no fixed size
[[nodiscard]] std::optional<WavSamples> FindWavSamples(const File& file);
