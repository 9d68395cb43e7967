#pragma once

#include "adaptor/WaveContext.h"

#include <string>
#include <system_error>

/// Writes a wave image as a PNG file of 24 bits a pixel, over what is at the path.
/// @return what went wrong; no error when the file is whole
[[nodiscard]] std::error_code WritePng(const WaveContext& image, const std::string& path);
