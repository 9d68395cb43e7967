#pragma once

#include "cutting/WAVChunkMap.h"
#include "cutting/WholeWAVLayout.h"

#include <functional>
#include <string>
#include <vector>

/// A stretch of a file to be written: bytes of our own, then some of the source.
struct WAVStretch {
    std::string bytes;
    long long sourceOffset = 0;
    long long sourceSize = 0; // bytes
};

/// Reads bytes of the source that are known to be there.
using ReadSource = std::function<std::string(long long offset, long long size)>;

/// What a file is made of that holds some samples of a source: every chunk of it, before and behind
/// the samples, those corrected that tell something of them (see CorrectChunk), pad bytes where
/// they belong and all sizes true. RF64 where 32 bits do not hold these, otherwise RIFF.
std::vector<WAVStretch> PlanWAV(const WholeWAVLayout& source, const WAVChunkMap& map,
                                const ReadSource& read);
