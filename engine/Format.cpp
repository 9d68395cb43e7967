#include "engine/Format.h"

#include "cutting/CutMP3.h"
#include "cutting/CutWholeWAV.h"
#include "finish/FinishEditedWAV.h"
#include "finish/FinishMP3.h"

#include <algorithm>
#include <filesystem>
#include <strings.h>

namespace {

bool CutMP3(const char* src, const char* dst, double start, double end, bool keep) {
    return CutMP3WholeFrames(src, dst, static_cast<float>(start), static_cast<float>(end), keep);
}

constexpr Format kFormats[] = {
    {FormatType::WAV, "WAV", "wav", "a WAV", CutAnyWAV, FinishEditedWAV},
    {FormatType::MP3, "MP3", "mp3", "an MP3", CutMP3, FinishEditedMP3},
};

} // namespace

const Format* FindFormat(FormatType type) {
    const auto* const found = std::ranges::find(kFormats, type, &Format::type);
    return found == std::end(kFormats) ? nullptr : found;
}

std::optional<FormatType> GetFormat(const std::string& path) {
    const std::string extension = std::filesystem::path(path).extension().string();
    for (const Format& format : kFormats) {
        if (!extension.empty() && strcasecmp(extension.c_str() + 1, format.extension) == 0) {
            return format.type;
        }
    }
    return std::nullopt;
}
