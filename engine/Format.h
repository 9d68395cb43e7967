#pragma once

#include "engine/FormatType.h"
#include "finish/EditedAudio.h"

#include <string>

/// What there is to know of a format that can be edited.
struct Format {
    FormatType type{};
    const char* name = nullptr;        ///< "MP3"
    const char* extension = nullptr;   ///< of its files, lower case, without a dot: "mp3"
    const char* description = nullptr; ///< English, with the article, before "file": "an MP3"

    /// Its cutter, CutMP3WholeFrames or CutAnyWAV.
    bool (*cut)(const char* src, const char* dst, double start, double end, bool keep) = nullptr;
    /// FinishEditedMP3 or FinishEditedWAV.
    bool (*finish)(const char* src, const std::string& dst, const EditedAudio& audio) = nullptr;
};

/// The format of a type; null for FormatType{}.
const Format* FindFormat(FormatType type);
