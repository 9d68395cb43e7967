#pragma once

#include "comparing/MatchFrames.h"

#include <vector>

class CMPAFile;

/// Reads the audio frames of an MP3 once, without that of its VBR header and without one at the end
/// that is cut short. A header frame in the middle, of a file that was appended, is an audio frame,
/// whether or not it still says what it was. Throws what SourceFrames throws.
[[nodiscard]] std::vector<FramePrint> ReadFramePrints(CMPAFile& file);
