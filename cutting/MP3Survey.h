#pragma once

#include "cutting/CutFailure.h"

#include <vector>

class CMPAFile;

/// What a walk over all frames of an MPEG audio file finds.
struct MP3Survey {
    long long frames = 0;     ///< whole ones that hold audio: without that of a VBR header
    bool endsInStump = false; ///< a last one is cut short, which is not among them
    double seconds = 0.0;     ///< that they play
    std::vector<CutWarning> warnings;
};

/// Walks to the end of the audio. Throws CMPAException when the file cannot be read.
MP3Survey SurveyMP3(CMPAFile& file);
