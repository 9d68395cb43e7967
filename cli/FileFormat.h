#pragma once

#include "engine/FormatType.h"

#include <optional>
#include <string>

/// What to say about a file of another format.
inline constexpr char kUnknownFormat[] = "neither an mp3 nor a wav file by its extension";

/// The format that a file's extension, in any letter case, stands for; none for another extension.
std::optional<FormatType> GetFormat(const std::string& path);
