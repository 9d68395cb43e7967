#pragma once

#include "cli/Json.h"

#include <string>

/// What the parser finds in an MPEG audio file: tags, first frame, VBR header and number of frames.
/// Throws CMPAException when the file cannot be opened or parsed.
Json DescribeMP3(const std::string& path);
