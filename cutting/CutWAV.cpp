#include "cutting/CutWAV.h"

#include "cutting/CutError.h"
#include "cutting/CutSummary.h"
#include "cutting/CutWork.h"
#include "cutting/LittleEndian.h"
#include "cutting/PlainWAV.h"
#include "cutting/WAVOutput.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <limits>

namespace {

// In single precision, so that a cut falls on the same byte wherever it is computed.
long long BytePosition(float product, int blockAlign) {
    constexpr float kMost = 9.0e18F;
    const auto position = static_cast<long long>(std::clamp(product, 0.0F, kMost));
    return position - position % blockAlign;
}

std::string SizeField(long long size) {
    if (size > std::numeric_limits<std::uint32_t>::max()) {
        throw CutError{CutReason::ResultTooLarge};
    }
    return LittleEndian(static_cast<std::uint64_t>(size), 4);
}

} // namespace

ByteRange PlainBytes(const WAVLayout& layout, float startSeconds, float endSeconds) {
    const auto bytesPerSecond = static_cast<float>(layout.bytesPerSecond);
    const float product = endSeconds * bytesPerSecond;
    ByteRange range{BytePosition(startSeconds * bytesPerSecond, layout.blockAlign),
                    BytePosition(product, layout.blockAlign)};
    // In a large file neighbouring single-precision numbers lie many sample frames apart. An end
    // that only this has put behind the samples means their end.
    const auto dataSize = static_cast<double>(layout.DataSize());
    const float step = std::nextafter(product, std::numeric_limits<float>::infinity()) - product;
    if (product > dataSize && product - dataSize <= 2.0 * step) {
        range.end = layout.DataSize();
    }
    return range;
}

WAVLayout ReadPlain(const WAVSource& source) {
    WAVLayout layout;
    const CutReason reason = ReadWAVLayout(source.file, layout);
    if (reason != CutReason::None) {
        throw CutError{reason, reason == CutReason::SourceUnreadable ? errno : 0};
    }
    return layout;
}

void WritePlain(WAVOutput& output, const WAVLayout& layout, const std::vector<ByteRange>& ranges) {
    // Everything before the samples; each byte keeps its offset.
    if (output.Copy(0, layout.DataOffset()) != layout.DataOffset()) {
        throw CutError{CutReason::NoData};
    }
    const long long size = layout.blockAlign;
    BeginCutSummary(output.GetPath(), static_cast<double>(size) / layout.bytesPerSecond);
    long long copied = 0;
    for (const ByteRange& range : ranges) {
        const long long arrived =
            output.Copy(layout.DataOffset() + range.start, range.end - range.start);
        AddToCutSummary(range.start / size, arrived / size);
        copied += arrived;
    }
    constexpr long long kSizeInHeader = 4;
    output.WriteAt(kSizeInHeader,
                   SizeField(layout.DataOffset() + copied - WAVLayout::kChunkHeaderSize));
    output.WriteAt(layout.DataOffset() - kSizeInHeader, SizeField(copied));
}

bool CutWAVFile(const char* src, const char* dst, float start, float end, bool keep) {
    return WithWAVSource(src, [&](WAVSource& source) {
        WriteWAV(source, dst, [&](WAVOutput& output) {
            const WAVLayout layout = ReadPlain(source);
            const ByteRange range = PlainBytes(layout, start, end);
            const long long kept = range.end - range.start;
            BeginWork(layout.DataOffset() + (keep ? kept : layout.DataSize() - kept));
            WritePlain(
                output, layout,
                keep ? std::vector{range}
                     : std::vector<ByteRange>{{0, range.start}, {range.end, layout.DataSize()}});
            EndWork();
        });
    });
}
