#include "cutting/CutWAV.h"

#include "cutting/CutError.h"
#include "cutting/CutWork.h"
#include "cutting/OutputFile.h"
#include "cutting/SourceWatch.h"
#include "cutting/WAVLayout.h"
#include "platform/RegularFile.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <limits>
#include <memory>
#include <new>

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

void WriteSize(long long offset, long long size) {
    if (size > std::numeric_limits<std::uint32_t>::max()) {
        throw CutError{CutReason::ResultTooLarge};
    }
    unsigned char bytes[4];
    for (int i = 0; i < 4; ++i) {
        bytes[i] = static_cast<unsigned char>(size >> 8 * i);
    }
    if (fseeko(oh, offset, SEEK_SET) != 0 ||
        std::fwrite(bytes, 1, sizeof bytes, oh) != sizeof bytes) {
        throw CutError{CutReason::OutputNotWritable, errno};
    }
}

// Before anything is done that may say something else.
void CheckCopied() {
    const int error = errno;
    if (std::ferror(ih) != 0) {
        throw CutError{CutReason::SourceUnreadable, error};
    }
    if (std::ferror(oh) != 0) {
        throw CutError{CutReason::OutputNotWritable, error};
    }
}

long long WorkBytes(const WAVLayout& layout, const ByteRange& range, bool keep) {
    const long long kept = range.end - range.start;
    return layout.DataOffset() + (keep ? kept : layout.DataSize() - kept);
}

void WriteCut(float start, float end, bool keep) {
    WAVLayout layout;
    const CutReason reason = ReadWAVLayout(ih, layout);
    if (reason != CutReason::None) {
        throw CutError{reason, reason == CutReason::SourceUnreadable ? errno : 0};
    }
    const ByteRange range = SampleBytes(layout, start, end);
    BeginWork(WorkBytes(layout, range, keep));
    const bool isHeaderWhole = CopyHeader(layout);
    CheckCopied();
    if (!isHeaderWhole) {
        throw CutError{CutReason::DamagedWAV};
    }
    const long long copied = CopySamples(layout, range, keep);
    CheckCopied();
    constexpr long long kSizeInHeader = 4;
    WriteSize(kSizeInHeader, layout.DataOffset() + copied - WAVLayout::kChunkHeaderSize);
    WriteSize(layout.DataOffset() - kSizeInHeader, copied);
    EndWork();
}

} // namespace

bool CutWAVFile(const char* src, const char* dst, float start, float end, bool keep) {
    ResetCutFailure();
    const SourceWatch watch(src);
    const FilePointer source = OpenRegularFile(src);
    if (source == nullptr) {
        SetCutFailure(CutReason::SourceUnreadable, src, errno);
        return false;
    }
    OutputFile output(dst, src);
    if (output.GetHandle() == nullptr) {
        SetCutFailure(CutReason::OutputNotCreatable, dst, errno);
        return false;
    }
    ih = source.get();
    oh = output.GetHandle();
    bool isWritten = false;
    try {
        WriteCut(start, end, keep);
        isWritten = true;
    } catch (const CutError& e) {
        SetCutFailure(e.reason, IsAboutOutput(e.reason) ? dst : src, e.errorNumber);
    } catch (const std::bad_alloc&) {
        SetCutFailure(CutReason::OutOfMemory, src);
    }
    ih = nullptr;
    oh = nullptr;
    if (watch.HasChanged()) {
        isWritten = false;
        SetCutFailure(CutReason::SourceChanged, src);
    }
    return output.Close(isWritten);
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
        AddWork(static_cast<long long>(whole));
        if (whole < wanted) {
            break;
        }
        count -= static_cast<long long>(whole);
    }
    return total;
}
