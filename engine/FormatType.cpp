#include "engine/FormatType.h"

#include <filesystem>
#include <strings.h>

std::optional<FormatType> GetFormat(const std::string& path) {
    const std::string extension = std::filesystem::path(path).extension().string();
    if (strcasecmp(extension.c_str(), ".mp3") == 0) {
        return FormatType::MP3;
    }
    return strcasecmp(extension.c_str(), ".wav") == 0 ? std::optional(FormatType::WAV)
                                                      : std::nullopt;
}
