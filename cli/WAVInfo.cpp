#include "cli/WAVInfo.h"

#include "cutting/WAVLayout.h"
#include "cutting/WholeWAVLayout.h"
#include "platform/RegularFile.h"
#include "platform/SystemError.h"

#include <algorithm>
#include <cerrno>

namespace {

double Seconds(long long dataBytes, long long blockAlign, double rateHz) {
    const long long sampleFrames = dataBytes / blockAlign;
    return rateHz > 0.0 ? static_cast<double>(sampleFrames) / rateHz : 0.0;
}

Json Chunk(const std::string& id, long long offset, long long size) {
    return {{"id", BytesToJson(id)}, {"offset", offset}, {"size", size}};
}

template <typename Layout>
Json Describe(const Layout& layout, const Json& chunks, double seconds) {
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

Json DescribePlain(const WAVLayout& layout) {
    Json chunks = Json::array();
    for (const WAVChunk& chunk : layout.chunks) {
        chunks.push_back(Chunk(chunk.id, chunk.offset, chunk.size));
    }
    const long long there = std::clamp(layout.fileSize - layout.DataOffset(), 0LL,
                                       static_cast<long long>(layout.DataSize()));
    return Describe(layout, chunks, Seconds(there, layout.blockAlign, layout.samplesPerSecond));
}

Json DescribeWhole(const WholeWAVLayout& layout) {
    Json chunks = Json::array();
    for (std::size_t i = 0; i <= layout.dataIndex; ++i) {
        const WholeWAVLayout::Chunk& chunk = layout.chunks[i];
        chunks.push_back(Chunk(chunk.id, chunk.offset, chunk.size));
    }
    return Describe(layout, chunks,
                    Seconds(layout.Data().size, layout.blockAlign, layout.samplesPerSecond));
}

} // namespace

Json DescribeWAV(const std::string& path, std::string& error) {
    const FilePointer file = OpenRegularFile(path.c_str());
    if (file == nullptr) {
        error = SystemErrorText(errno);
        return nullptr;
    }
    WAVLayout plain;
    if (ReadWAVLayout(file.get(), plain) == CutReason::None) {
        return DescribePlain(plain);
    }
    WholeWAVLayout whole;
    const CutReason reason = ReadWholeWAVLayout(file.get(), whole);
    error = DescribeFailure(reason);
    return reason == CutReason::None ? DescribeWhole(whole) : Json(nullptr);
}
