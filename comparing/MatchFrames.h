#pragma once

#include "comparing/Comparison.h"

#include <cstdint>
#include <vector>

/// What a frame of an MP3 is known by.
struct FramePrint {
    std::uint64_t bytes = 0; ///< hash of the whole frame
    /// Hash of what is decoded: the header's facts, the side information and the main data,
    /// wherever in the stream these stand. 0 where they are not known.
    std::uint64_t sound = 0;
    bool isMute = false; ///< has no main data
};

/// Finds the frames of one MP3 in another. Frames that there are many of, as in silence, go with
/// their neighbours.
///
/// Altered is what making a join without a fault alters: a frame that decodes from the same data,
/// which stand elsewhere, and a few mute ones beside frames that were found: a join has muted them,
/// or put them in to carry data.
[[nodiscard]] Comparison MatchFrames(const std::vector<FramePrint>& source,
                                     const std::vector<FramePrint>& result);
