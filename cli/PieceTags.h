#pragma once

#include "engine/FormatType.h"

#include <string>
#include <vector>

/// What the tags of a piece are to say.
struct PieceTags {
    std::string title; ///< UTF-8; where it is empty, a title that is there stays
    unsigned int track = 0;
};

/// Sets title and track number: of an MP3 in an ID3v2 tag, and in an APE or ID3v1 tag where there
/// is one; of a WAV in its list of information, and in an ID3v2 tag where there is one. All else
/// stays.
/// @return false when that could not be written
[[nodiscard]] bool WritePieceTags(const std::string& path, FormatType format,
                                  const PieceTags& tags);

/// What tags say for people, UTF-8; empty where they say nothing.
struct TagFacts {
    std::string title;
    std::string artist;
    std::vector<std::string> chapters; ///< of each its begin in seconds and its title
};

TagFacts ReadTagFacts(const std::string& path, FormatType format);
