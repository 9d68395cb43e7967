#pragma once

#include "audio/FileWindow.h"

#include <cstdint>

/// Where an MPEG file's audio lies between the tags at its two ends. Offsets in bytes.
///
/// The cutters' parser knows the same tags and measures them in the same way: what is heard and
/// what is cut are then the same frames.
struct TagBounds {
    std::int64_t beginBytes = 0; ///< behind the leading tags; beyond the file if one reaches there
    std::int64_t endBytes = 0;   ///< of the audio: where the trailing tags begin
};

/// Steps over ID3v2 and APE tags from the start on, and over ID3v1, MusicMatch, ID3v2 (by its
/// footer), Lyrics3 and APE tags from the end backwards, any number in any order. Trailing tags end
/// at the first that is damaged, which is left to the audio.
TagBounds FindTagBounds(FileWindow& window);
