#pragma once

#include <optional>
#include <string>

/// The format of the file being edited, by its extension. FormatType{} is neither.
enum class FormatType : int { WAV = 1, MP3 = 2 };

/// The format that a file's extension, in any letter case, stands for; none for another extension.
std::optional<FormatType> GetFormat(const std::string& path);
