#pragma once

#include <string>

enum class FileFormat { Unknown, MP3, WAV };

/// What to say about a file of another format.
inline constexpr char kUnknownFormat[] = "neither an mp3 nor a wav file by its extension";

/// The format that a file's extension, in any letter case, stands for.
FileFormat GetFormat(const std::string& path);
