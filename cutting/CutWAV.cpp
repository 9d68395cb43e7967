#include "cutting/CutWAV.h"

#include "cutting/OutputFile.h"
#include "cutting/WAVLayout.h"
#include "platform/RegularFile.h"
#include "platform/SystemError.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <exception>
#include <limits>
#include <memory>

namespace {

constexpr std::size_t kBlockBytes = 4096;
constexpr std::size_t kBlocksAtOnce = 64; // fewer system calls; what gets copied is the same

// The source and the output.
std::FILE* ih = nullptr;
std::FILE* oh = nullptr;

/// The samples of a range, as offsets in the payload of the data chunk.
struct ByteRange {
    long long start;
    long long end;
};

// In single precision, so that a cut falls on the same byte wherever it is computed.
long long BytePosition(float product, int blockAlign) {
    constexpr float kMost = 9.0e18F;
    const auto position = static_cast<long long>(std::clamp(product, 0.0F, kMost));
    return position - position % blockAlign;
}

ByteRange SampleBytes(const WAVLayout& layout, float startSeconds, float endSeconds) {
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

// Everything before the samples; each byte keeps its offset.
bool CopyHeader(const WAVLayout& layout) {
    std::rewind(ih);
    return OutputData(layout.DataOffset()) == layout.DataOffset();
}

long long CopySamples(const WAVLayout& layout, const ByteRange& range, bool keep) {
    if (keep) {
        return fseeko(ih, range.start, SEEK_CUR) == 0 ? OutputData(range.end - range.start) : 0;
    }
    const long long before = OutputData(range.start);
    if (fseeko(ih, range.end - range.start, SEEK_CUR) != 0) {
        return before;
    }
    return before + OutputData(layout.DataSize() - range.end);
}

bool WriteSize(long long offset, long long size) {
    if (size > std::numeric_limits<std::uint32_t>::max()) {
        SetCutFailure("the result is too large for a WAV file");
        return false;
    }
    unsigned char bytes[4];
    for (int i = 0; i < 4; ++i) {
        bytes[i] = static_cast<unsigned char>(size >> 8 * i);
    }
    return fseeko(oh, offset, SEEK_SET) == 0 &&
           std::fwrite(bytes, 1, sizeof bytes, oh) == sizeof bytes;
}

bool WriteCut(float start, float end, bool keep) {
    WAVLayout layout;
    std::string error;
    if (!ReadWAVLayout(ih, layout, error)) {
        SetCutFailure(error);
        return false;
    }
    if (!CopyHeader(layout)) {
        SetCutFailure("the file ends before its samples");
        return false;
    }
    const long long copied = CopySamples(layout, SampleBytes(layout, start, end), keep);
    if (std::ferror(ih) != 0) {
        SetCutFailure("cannot read the source: " + SystemErrorText(errno));
        return false;
    }
    constexpr long long kSizeInHeader = 4;
    return WriteSize(kSizeInHeader, layout.DataOffset() + copied - WAVLayout::kChunkHeaderSize) &&
           WriteSize(layout.DataOffset() - kSizeInHeader, copied);
}

} // namespace

bool CutWAVFile(const char* src, const char* dst, float start, float end, bool keep) {
    SetCutFailure("");
    const FilePointer source = OpenRegularFile(src);
    if (source == nullptr) {
        SetCutFailure(SystemErrorText(errno));
        return false;
    }
    OutputFile output(dst, src);
    if (output.GetHandle() == nullptr) {
        SetCutFailure("cannot create the output: " + SystemErrorText(errno));
        return false;
    }
    ih = source.get();
    oh = output.GetHandle();
    bool result = false;
    try {
        result = WriteCut(start, end, keep);
    } catch (const std::exception& e) {
        SetCutFailure(e.what());
    }
    ih = nullptr;
    oh = nullptr;
    return output.Close(result);
}

long long OutputData(long long count) {
    const auto blocks = std::make_unique_for_overwrite<char[]>(kBlocksAtOnce * kBlockBytes);
    long long total = 0;
    while (count > 0) {
        const auto wanted =
            static_cast<std::size_t>(std::min<long long>(count, kBlocksAtOnce * kBlockBytes));
        const std::size_t arrived = std::fread(blocks.get(), 1, wanted, ih);
        const std::size_t whole = arrived < wanted ? arrived - arrived % kBlockBytes : arrived;
        if (std::fwrite(blocks.get(), 1, whole, oh) < whole) {
            break;
        }
        total += static_cast<long long>(whole);
        if (whole < wanted) {
            break;
        }
        count -= static_cast<long long>(whole);
    }
    return total;
}
