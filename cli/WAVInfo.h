#pragma once

#include "cli/Json.h"

#include <string>

/// The format and the chunks, up to and including the samples, of a WAV file that can be cut.
/// @param error  out, on failure: what is wrong, in English
/// @return null (JSON) when the file cannot be opened or cut
[[nodiscard]] Json DescribeWAV(const std::string& path, std::string& error);
