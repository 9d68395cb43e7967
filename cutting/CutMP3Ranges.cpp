#include "cutting/CutError.h"
#include "cutting/CutMP3.h"
#include "cutting/CutWork.h"
#include "cutting/FrameWalk.h"
#include "cutting/MP3Output.h"
#include "mpeg/MPAFile.h"
#include "mpeg/MPAStream.h"
#include "mpeg/VBRHeader.h"

#include <algorithm>
#include <vector>

namespace {

struct Piece {
    std::string path;
    FrameRange frames;
};

std::vector<Piece> InOrder(std::span<const CutPiece> pieces, const CMPAHeader& header) {
    std::vector<Piece> inOrder;
    inOrder.reserve(pieces.size());
    for (const CutPiece& piece : pieces) {
        inOrder.push_back({piece.path, FrameRange(piece.range, header)});
    }
    std::ranges::stable_sort(inOrder, {}, [](const Piece& piece) { return piece.frames.start; });
    return inOrder;
}

/// What a cut does to the VBR header of a parsed file, undone for the next one.
class HeaderCounts {
public:
    explicit HeaderCounts(CMPAFile& file) : m_header(file.GetVBRHeader()) {
        if (m_header != nullptr) {
            m_bytes = m_header->GetByteCount();
            m_frames = m_header->GetFrameCount();
        }
    }

    void Restore() {
        if (m_header != nullptr) {
            m_header->SetByteCount(m_bytes);
            m_header->SetFrameCount(m_frames);
            std::fill_n(m_header->GetRewriteTable(),
                        m_header->GetRewriteTable() == nullptr ? 0 : m_header->GetTableSize(), 0U);
        }
    }

private:
    CVBRHeader* m_header;
    unsigned int m_bytes = 0;
    unsigned int m_frames = 0;
};

/// Writes pieces one after the other, in the order of their beginnings, and steps over each frame
/// once unless two pieces share it.
class PieceWriter {
public:
    PieceWriter(CMPAFile& file, const char* source)
        : m_file(file), m_source(source), m_first(*file.GetFirstFrame()), m_counts(file),
          m_isTrusted(TellsItsSize(file)), m_walk(file, FrameWalk::Stump::NoFrame) {
        if (m_walk.Current() == nullptr) {
            throw CutError{CutReason::NoFrame};
        }
    }

    /// @param nextStart  where the piece after this one begins
    void Write(const Piece& piece, long long nextStart) {
        MP3Output output(piece.path, m_source);
        if (!output.IsOpen()) {
            throw CutError{CutReason::OutputNotCreatable}; // which has been told
        }
        m_counts.Restore();
        output.Begin(m_file, m_first);
        m_walk.Skip(piece.frames.start - m_walk.Number());
        const long long count = CountInHeader(m_file);
        const FrameWalk::Place next = WriteFrames(output, piece.frames, nextStart, count);
        if (output.FramesWritten() == 0) {
            throw CutError{CutReason::NoAudioInRange};
        }
        output.FinishHeader();
        output.CopyTrailingTags();
        if (!output.Close(true)) {
            throw CutError{CutReason::OutputNotWritable}; // which has been told
        }
        m_walk.GoTo(next);
    }

    /// All pieces are written: looks at what is behind them.
    void WarnOfRest() {
        m_counts.Restore();
        if (!m_isTrusted) {
            WalkOn(m_walk);
        }
        WarnOfEnd(m_walk, CountInHeader(m_file));
    }

private:
    // Returns where the walk goes on: as far as the next piece allows.
    FrameWalk::Place WriteFrames(MP3Output& output, const FrameRange& frames, long long nextStart,
                                 long long count) {
        const long long most = frames.Distance() + 1;
        const long long expected = ExpectedFrames(frames, m_isTrusted ? count : 0);
        FrameWalk::Place next = m_walk.Here();
        bool isWriting = most > 0;
        while (isWriting) {
            if (m_walk.Number() <= nextStart) {
                next = m_walk.Here();
            }
            isWriting = output.WriteNext(m_walk, expected) && output.FramesWritten() < most;
        }
        return m_walk.Number() <= nextStart ? m_walk.Here() : next;
    }

    CMPAFile& m_file;
    const char* m_source;
    CMPAFrame m_first;
    HeaderCounts m_counts;
    bool m_isTrusted;
    FrameWalk m_walk;
};

void WritePieces(CMPAFile& file, const char* src, std::span<const CutPiece> pieces,
                 std::vector<std::string>& written) {
    BeginWork(file.GetStream()->GetSize());
    const std::vector<Piece> inOrder = InOrder(pieces, *file.GetFirstFrame()->GetHeader());
    PieceWriter writer(file, src);
    for (std::size_t i = 0; i < inOrder.size(); ++i) {
        const std::size_t next = std::min(i + 1, inOrder.size() - 1);
        writer.Write(inOrder[i], inOrder[next].frames.start);
        written.push_back(inOrder[i].path);
    }
    writer.WarnOfRest();
    EndWork();
}

// The frames that are dropped, as half-open ranges of the frames behind the header's or, without
// one, of all.
std::vector<FrameRange> DroppedFrames(std::span<const CutRange> ranges, const CMPAHeader& header) {
    std::vector<FrameRange> dropped;
    for (const CutRange& range : MergedRanges(ranges)) {
        FrameRange frames(range, header);
        ++frames.start; // the one that it begins in stays
        if (frames.start < frames.end) {
            dropped.push_back(frames);
        }
    }
    return dropped;
}

void WriteAllBut(CMPAFile& file, MP3Output& output, std::span<const CutRange> ranges) {
    const bool hasHeader = file.GetVBRHeader() != nullptr;
    const bool isCounted = CountInHeader(file) != 0;
    const long long size = file.GetStream()->GetSize();
    BeginWork(isCounted ? size : 2 * size);
    const long long count = GetFrameCount(&file) + (hasHeader ? 0 : 1);
    FrameWalk walk(file, FrameWalk::Stump::NoFrame);
    if (walk.Current() == nullptr) {
        throw CutError{CutReason::NoFrame};
    }
    output.Begin(file, *walk.Current());
    const std::vector<FrameRange> dropped = DroppedFrames(ranges, *walk.Current()->GetHeader());
    long long expected = count;
    for (const FrameRange& frames : dropped) {
        expected -= std::min(frames.end, count) - std::min(frames.start, count);
    }
    auto next = dropped.begin();
    // The frames that a VBR header does not stand among begin with the first one.
    if (hasHeader) {
        walk.Step();
    }
    for (long long i = 0; walk.Current() != nullptr; ++i, walk.Step()) {
        while (next != dropped.end() && next->end <= i) {
            ++next;
        }
        if (next == dropped.end() || i < next->start) {
            output.Write(walk, expected);
        }
    }
    WarnOfEnd(walk, isCounted ? count : 0);
    if (output.FramesWritten() == 0) {
        throw CutError{CutReason::NothingLeft};
    }
    output.FinishHeader();
    output.CopyTrailingTags();
    EndWork();
}

} // namespace

bool CutMP3Pieces(const char* src, std::span<const CutPiece> pieces) {
    ResetCutFailure();
    std::vector<std::string> written;
    const bool areWritten =
        WithMP3Source(src, [&](CMPAFile& file) { WritePieces(file, src, pieces, written); });
    if (!areWritten) {
        std::ranges::for_each(written, RemoveOutput);
    }
    return areWritten;
}

bool CutMP3AllBut(const char* src, const char* dst, std::span<const CutRange> ranges) {
    ResetCutFailure();
    MP3Output output(dst, src);
    if (!output.IsOpen()) {
        return false;
    }
    const bool isWritten =
        WithMP3Source(src, [&](CMPAFile& file) { WriteAllBut(file, output, ranges); });
    return output.Close(isWritten);
}
