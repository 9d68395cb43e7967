#pragma once

#include "cli/Json.h"

#include <string>

/// What the parser finds in an MPEG audio file: tags, first frame, VBR header, number of frames and
/// duration. What is odd about it is reported.
/// @param error  out, on failure: what is wrong, in English
/// @return null (JSON) when the file cannot be opened or parsed
Json DescribeMP3(const std::string& path, std::string& error);

/// Reports what is odd about an MPEG audio file, unless such remarks are not wanted. One that
/// cannot be read is for others to tell of.
void ReportOddities(const std::string& path);
