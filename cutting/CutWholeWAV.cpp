#include "cutting/CutWholeWAV.h"

#include "cutting/CutError.h"
#include "cutting/CutSummary.h"
#include "cutting/CutWAV.h"
#include "cutting/CutWork.h"
#include "cutting/PlainWAV.h"
#include "cutting/WAVPlan.h"

#include <algorithm>
#include <cerrno>
#include <cmath>

namespace {

WholeWAVLayout ReadWhole(const WAVSource& source) {
    WholeWAVLayout layout;
    const CutReason reason = ReadWholeWAVLayout(source.file, layout);
    if (reason != CutReason::None) {
        throw CutError{reason, reason == CutReason::SourceUnreadable ? errno : 0};
    }
    return layout;
}

std::string ReadBytes(const WAVSource& source, long long offset, long long size) {
    std::string bytes(static_cast<std::size_t>(size), '\0');
    if (fseeko(source.file, offset, SEEK_SET) != 0 ||
        std::fread(bytes.data(), 1, bytes.size(), source.file) != bytes.size()) {
        throw CutError{CutReason::SourceUnreadable, std::ferror(source.file) != 0 ? errno : 0};
    }
    return bytes;
}

long long SampleFrame(const WholeWAVLayout& layout, double seconds) {
    constexpr double kRounding = 1e-6;
    const double frame =
        std::floor(seconds * static_cast<double>(layout.samplesPerSecond) + kRounding);
    const auto total = static_cast<double>(layout.SampleFrames());
    return frame > 0.0 ? static_cast<long long>(std::min(frame, total)) : 0; // also for a NaN
}

std::vector<SampleRange> KeptFrames(const WholeWAVLayout& layout, const CutRange& range,
                                    bool keep) {
    const SampleRange frames{SampleFrame(layout, range.start), SampleFrame(layout, range.end)};
    return keep ? std::vector{frames}
                : std::vector<SampleRange>{
                      {0, frames.begin},
                      {std::max(frames.begin, frames.end), layout.SampleFrames()}};
}

long long KeptBytes(const WholeWAVLayout& layout, const std::vector<SampleRange>& kept) {
    long long frames = 0;
    for (const SampleRange& range : kept) {
        frames += std::max(0LL, range.end - range.begin);
    }
    return frames * layout.blockAlign;
}

void WriteWhole(WAVSource& source, const std::string& dst, const WholeWAVLayout& layout,
                std::vector<SampleRange> kept, CutReason whenEmpty, const ShowCopied& show = {}) {
    std::erase_if(kept, [](const SampleRange& range) { return range.begin >= range.end; });
    if (kept.empty()) {
        throw CutError{whenEmpty};
    }
    WriteWAV(source, dst, [&](WAVOutput& output) {
        BeginCutSummary(dst, 1.0 / layout.samplesPerSecond);
        for (const SampleRange& range : kept) {
            AddToCutSummary(range.begin, range.end - range.begin);
        }
        const WAVChunkMap map(kept, layout.SampleFrames());
        const auto plan = PlanWAV(layout, map, [&](long long offset, long long size) {
            return ReadBytes(source, offset, size);
        });
        for (const WAVStretch& stretch : plan) {
            output.Write(stretch.bytes);
            if (output.Copy(stretch.sourceOffset, stretch.sourceSize, show) != stretch.sourceSize) {
                throw CutError{CutReason::SourceUnreadable}; // the file ends before its end
            }
        }
    });
}

bool IsPlain(const WAVSource& source) {
    WAVLayout layout;
    return ReadWAVLayout(source.file, layout) == CutReason::None;
}

// The samples of a plain file as far as they are there, in whole sample frames.
long long PlainEnd(const WAVLayout& layout) {
    const long long there =
        std::min<long long>(layout.DataSize(), layout.fileSize - layout.DataOffset());
    return there - there % layout.blockAlign;
}

// What CutWAVFile would take, but no more than there is, and all of it where the end was meant.
ByteRange PlainRange(const WAVLayout& layout, const CutRange& range) {
    ByteRange bytes =
        PlainBytes(layout, static_cast<float>(range.start), static_cast<float>(range.end));
    const long long end = PlainEnd(layout);
    const bool isEnd =
        range.end * static_cast<double>(layout.bytesPerSecond) >= static_cast<double>(end);
    bytes.end = isEnd ? end : std::min(bytes.end, end);
    return bytes;
}

void WritePlainRanges(WAVSource& source, const std::string& dst, const WAVLayout& layout,
                      std::vector<ByteRange> ranges, CutReason whenEmpty) {
    std::erase_if(ranges, [](const ByteRange& range) { return range.start >= range.end; });
    if (ranges.empty()) {
        throw CutError{whenEmpty};
    }
    WriteWAV(source, dst, [&](WAVOutput& output) { WritePlain(output, layout, ranges); });
}

void WritePlainPieces(WAVSource& source, std::span<const CutPiece> pieces) {
    const WAVLayout layout = ReadPlain(source);
    long long bytes = 0;
    for (const CutPiece& piece : pieces) {
        const ByteRange range = PlainRange(layout, piece.range);
        bytes += layout.DataOffset() + range.end - range.start;
    }
    BeginWork(bytes);
    for (const auto& [path, range] : pieces) {
        WritePlainRanges(source, path, layout, {PlainRange(layout, range)},
                         CutReason::NoAudioInRange);
    }
}

void WriteWholePieces(WAVSource& source, std::span<const CutPiece> pieces) {
    const WholeWAVLayout layout = ReadWhole(source);
    long long bytes = 0;
    for (const CutPiece& piece : pieces) {
        bytes += KeptBytes(layout, KeptFrames(layout, piece.range, true));
    }
    BeginWork(bytes);
    for (const auto& [path, range] : pieces) {
        WriteWhole(source, path, layout, KeptFrames(layout, range, true),
                   CutReason::NoAudioInRange);
    }
}

void WritePlainAllBut(WAVSource& source, const char* dst, std::span<const CutRange> ranges) {
    const WAVLayout layout = ReadPlain(source);
    std::vector<ByteRange> kept;
    long long begin = 0;
    for (const CutRange& range : MergedRanges(ranges)) {
        const ByteRange removed = PlainRange(layout, range);
        kept.push_back({begin, std::min(removed.start, PlainEnd(layout))});
        begin = std::max(begin, removed.end);
    }
    kept.push_back({begin, PlainEnd(layout)});
    BeginWork(layout.fileSize);
    WritePlainRanges(source, dst, layout, kept, CutReason::NothingLeft);
}

void WriteWholeAllBut(WAVSource& source, const char* dst, std::span<const CutRange> ranges) {
    const WholeWAVLayout layout = ReadWhole(source);
    std::vector<SampleRange> kept;
    long long begin = 0;
    for (const CutRange& range : MergedRanges(ranges)) {
        kept.push_back({begin, SampleFrame(layout, range.start)});
        begin = std::max(begin, SampleFrame(layout, range.end));
    }
    kept.push_back({begin, layout.SampleFrames()});
    BeginWork(KeptBytes(layout, kept));
    WriteWhole(source, dst, layout, kept, CutReason::NothingLeft);
}

} // namespace

bool CutWholeWAV(const char* src, const char* dst, double start, double end, bool keep) {
    return WithWAVSource(src, [&](WAVSource& source) {
        const WholeWAVLayout layout = ReadWhole(source);
        const auto kept = KeptFrames(layout, {start, end}, keep);
        BeginWork(KeptBytes(layout, kept));
        WriteWhole(source, dst, layout, kept,
                   keep ? CutReason::NoAudioInRange : CutReason::NothingLeft);
        EndWork();
    });
}

bool FinishWAV(const char* src, const char* dst, const std::vector<SampleRange>& kept,
               const ShowCopied& show) {
    return WithWAVSource(src, [&](WAVSource& source) {
        const WholeWAVLayout layout = ReadWhole(source);
        std::vector<SampleRange> there = kept;
        for (SampleRange& range : there) {
            range.end = std::min(range.end, layout.SampleFrames());
        }
        BeginWork(KeptBytes(layout, there));
        WriteWhole(source, dst, layout, there, CutReason::NoAudioInRange, show);
        EndWork();
    });
}

CutReason WhyNoCutterTakes(const char* path) {
    const FilePointer file = OpenRegularFile(path);
    if (file == nullptr) {
        return CutReason::SourceUnreadable;
    }
    WAVLayout plain;
    if (ReadWAVLayout(file.get(), plain) == CutReason::None) {
        return CutReason::None;
    }
    WholeWAVLayout whole;
    return ReadWholeWAVLayout(file.get(), whole);
}

bool CutAnyWAV(const char* src, const char* dst, double start, double end, bool keep) {
    const FilePointer file = OpenRegularFile(src);
    return file != nullptr && !IsPlain({src, file.get()})
               ? CutWholeWAV(src, dst, start, end, keep)
               : CutWAVFile(src, dst, static_cast<float>(start), static_cast<float>(end), keep);
}

bool CutWAVPieces(const char* src, std::span<const CutPiece> pieces) {
    return WithWAVSource(src, [&](WAVSource& source) {
        IsPlain(source) ? WritePlainPieces(source, pieces) : WriteWholePieces(source, pieces);
        EndWork();
    });
}

bool CutWAVAllBut(const char* src, const char* dst, std::span<const CutRange> ranges) {
    return WithWAVSource(src, [&](WAVSource& source) {
        IsPlain(source) ? WritePlainAllBut(source, dst, ranges)
                        : WriteWholeAllBut(source, dst, ranges);
        EndWork();
    });
}
