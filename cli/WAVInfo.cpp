#include "cli/WAVInfo.h"

#include "cutting/WAVLayout.h"
#include "platform/RegularFile.h"
#include "platform/SystemError.h"

#include <algorithm>
#include <cerrno>

Json DescribeWAV(const std::string& path, std::string& error) {
    const FilePointer file = OpenRegularFile(path.c_str());
    if (file == nullptr) {
        error = SystemErrorText(errno);
        return nullptr;
    }
    WAVLayout layout;
    error = DescribeFailure(ReadWAVLayout(file.get(), layout));
    if (!error.empty()) {
        return nullptr;
    }
    const long long bytes = std::clamp(layout.fileSize - layout.DataOffset(), 0LL,
                                       static_cast<long long>(layout.DataSize()));
    const auto sampleFrames = static_cast<double>(bytes / layout.blockAlign);
    const double seconds =
        layout.samplesPerSecond == 0 ? 0.0 : sampleFrames / layout.samplesPerSecond;
    Json chunks = Json::array();
    for (const WAVChunk& chunk : layout.chunks) {
        chunks.push_back(
            {{"id", BytesToJson(chunk.id)}, {"offset", chunk.offset}, {"size", chunk.size}});
    }
    return {{"format", "wav"},
            {"size", layout.fileSize},
            {"format_tag", layout.formatTag},
            {"channels", layout.channels},
            {"sample_rate", layout.samplesPerSecond},
            {"bytes_per_second", layout.bytesPerSecond},
            {"block_align", layout.blockAlign},
            {"bits", layout.bitsPerSample},
            {"chunks", chunks},
            {"seconds", seconds}};
}
