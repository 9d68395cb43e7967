#include "cutting/CutMP3.h"

#include "cutting/CutError.h"
#include "cutting/CutWork.h"
#include "cutting/OutputFile.h"
#include "cutting/SourceWatch.h"
#include "cutting/VBRFields.h"
#include "mpeg/MPAEndOfFileException.h"
#include "mpeg/MPAFile.h"
#include "mpeg/MPAStream.h"
#include "mpeg/Tags.h"
#include "mpeg/VBRHeader.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

namespace {

// The output, where in it the source's first frame comes to lie (how many bytes further from the
// start than in the source), and where that frame ends in the source.
std::FILE* oh = nullptr;
long long firstFrameShift = 0;
long long firstFrameEnd = 0;

/// The frames of a range: it begins in frame `start` and ends before frame `end`, counted from the
/// first one as 0.
struct FrameRange {
    long long start;
    long long end;
    long long Distance() const { return end - start; }
};

/// What a cut has written so far; tags and the VBR header's frame do not count.
struct Written {
    int frames = 0;
    unsigned int bytes = 0;
};

/// Walks over the frames of a file, one at a time.
class FrameWalk {
public:
    explicit FrameWalk(CMPAFile& file) : m_file(file) {
        file.FindFrame(CMPAFile::First, nullptr, 0, *m_current);
    }
    FrameWalk(const FrameWalk&) = delete;
    FrameWalk& operator=(const FrameWalk&) = delete;
    ~FrameWalk() = default;

    // Null at the end of the audio, where it stays.
    CMPAFrame* Current() { return *m_current ? &**m_current : nullptr; }

    bool Step() {
        if (*m_current) {
            m_file.FindFrame(CMPAFile::Next, Current(), 0, *m_next);
            std::swap(m_current, m_next);
            AddWork(*m_current ? (*m_current)->GetSize() : 0);
        }
        return m_current->has_value();
    }

    void Skip(long long frames) {
        for (long long i = 0; i < frames && Step(); ++i) {
        }
    }

    /// Steps to the next frame and writes it. Returns false at the end and when it was not written.
    bool StepAndWrite(long long total, Written& written) {
        Step();
        const int size = WriteFrame(
            &m_file, Current(),
            static_cast<int>(std::min<long long>(total, std::numeric_limits<int>::max())),
            written.frames, static_cast<int>(written.bytes));
        if (size <= 0) {
            return false;
        }
        ++written.frames;
        written.bytes += static_cast<unsigned int>(size);
        return true;
    }

private:
    CMPAFile& m_file;
    // A frame and the one after it take turns, so that none is moved.
    std::optional<CMPAFrame> m_frames[2];
    std::optional<CMPAFrame>* m_current = &m_frames[0];
    std::optional<CMPAFrame>* m_next = &m_frames[1];
};

// In single precision throughout, the product first: where a frame boundary falls is part of what a
// cut is, and must not depend on who computes it.
long long FrameNumber(float seconds, const CMPAHeader& header, float (*round)(float)) {
    const float samples = seconds * static_cast<float>(header.GetSamplingRateHz());
    const float frames = round(samples / static_cast<float>(header.GetSamplesPerFrame()));
    constexpr auto kMost = static_cast<float>(1U << 31);
    return std::isnan(frames) ? 0 : static_cast<long long>(std::clamp(frames, -kMost, kMost));
}

void WriteBytes(const void* bytes, std::size_t size) {
    if (std::fwrite(bytes, 1, size, oh) != size) {
        throw CutError{CutReason::OutputNotWritable, errno};
    }
}

void SeekOutput(long long offset, int whence) {
    if (fseeko(oh, offset, whence) != 0) {
        throw CutError{CutReason::OutputNotWritable, errno};
    }
}

// In pieces: a tag with pictures may be larger than anything else that a cut holds in memory.
void CopyTag(const CMPAStream& stream, const CTag& tag) {
    constexpr unsigned int kPieceBytes = 64 * 1024;
    long long offset = tag.GetOffset();
    for (unsigned int left = tag.GetSize(); left > 0;) {
        const unsigned int size = std::min(left, kPieceBytes);
        WriteBytes(stream.ReadBytes(size, offset, true, false), size);
        left -= size;
    }
}

std::vector<const CTag*> TagsWhere(const CMPAFile& file, bool appended) {
    std::vector<const CTag*> tags;
    unsigned int index = 0;
    while (const CTag* tag = file.GetTags()->GetNextTag(index)) {
        if (tag->IsAppended() == appended) {
            tags.push_back(tag);
        }
    }
    return tags;
}

void CopyLeadingTags(const CMPAFile& file) {
    for (const CTag* tag : TagsWhere(file, false)) {
        CopyTag(*file.GetStream(), *tag);
    }
}

// The collection lists them from the end of the file backwards.
void CopyTrailingTags(const CMPAFile& file) {
    SeekOutput(0, SEEK_END);
    const std::vector<const CTag*> tags = TagsWhere(file, true);
    std::for_each(tags.rbegin(), tags.rend(),
                  [&](const CTag* tag) { CopyTag(*file.GetStream(), *tag); });
}

void CopyFrame(const CMPAFrame& frame) {
    const CMPAStream& stream = *frame.GetStream();
    long long offset = frame.GetOffset();
    try {
        WriteBytes(stream.ReadBytes(frame.GetSize(), offset, false, false), frame.GetSize());
    } catch (const CMPAEndOfFileException&) {
        throw CMPAException(CMPAException::NoFrameBeforeEOF, stream.GetFileName(),
                            "The source ends in the middle of a frame", false);
    }
}

Written WriteRange(CMPAFile& file, const FrameRange& range) {
    Written written;
    if (range.end < range.start) {
        return written;
    }
    FrameWalk walk(file);
    walk.Skip(range.start);
    const long long total = range.Distance() + 1;
    while (written.frames < total && walk.StepAndWrite(total, written)) {
    }
    return written;
}

Written WriteAllButRange(CMPAFile& file, const FrameRange& range) {
    const long long total = GetFrameCount(&file) - range.Distance() + 1;
    Written written;
    FrameWalk walk(file);
    while (written.frames <= range.start && walk.StepAndWrite(total, written)) {
    }
    walk.Skip(range.Distance() - 1);
    while (walk.Current() != nullptr && written.frames + 1 < total &&
           walk.StepAndWrite(total, written)) {
    }
    return written;
}

void UpdateVBRHeader(CVBRHeader& header, const Written& written) {
    // A count of 0 was not known before, and stays so.
    if (header.GetByteCount() != 0) {
        header.SetByteCount(written.bytes);
    }
    if (header.GetFrameCount() != 0) {
        header.SetFrameCount(static_cast<unsigned int>(written.frames));
    }
    if (!RewriteVBRHeader(oh, &header)) {
        throw CutError{CutReason::OutputNotWritable, errno};
    }
}

// How much of the source the walks read. The frames are counted before the rest is written; where
// a range ends in bytes can only be guessed.
long long WorkBytes(CMPAFile& file, float end, bool keep) {
    const long long size = file.GetStream()->GetSize();
    const CVBRHeader* header = file.GetVBRHeader();
    if (!keep) {
        return header == nullptr || header->GetFrameCount() == 0 ? 2 * size : size;
    }
    const CMPAHeader& first = *file.GetFirstFrame()->GetHeader();
    const double seconds = header != nullptr && header->GetFrameCount() != 0
                               ? static_cast<double>(header->GetFrameCount()) *
                                     first.GetSamplesPerFrame() / first.GetSamplingRateHz()
                               : static_cast<double>(size) / std::max(1U, file.GetBytesPerSec());
    const double share = std::clamp(static_cast<double>(end) / seconds, 0.0, 1.0);
    return static_cast<long long>(share * static_cast<double>(size));
}

void WriteAudio(CMPAFile& file, float start, float end, bool keep) {
    FrameWalk walk(file);
    const CMPAFrame* first = walk.Current();
    if (first == nullptr) {
        throw CutError{CutReason::NoFrame};
    }
    firstFrameShift = ftello(oh) - first->GetOffset();
    firstFrameEnd = first->GetOffset() + first->GetSize();
    if (file.GetVBRHeader() != nullptr) {
        CopyFrame(*first);
    }
    const CMPAHeader& header = *first->GetHeader();
    const FrameRange range{FrameNumber(start, header, std::floor),
                           FrameNumber(end, header, std::ceil)};
    const Written written = keep ? WriteRange(file, range) : WriteAllButRange(file, range);
    if (file.GetVBRHeader() != nullptr) {
        UpdateVBRHeader(*file.GetVBRHeader(), written);
    }
}

// What the parser says is shown in its own words, and noted in ours.
void NoteParserError(CMPAException& exception, const char* src, CutReason endReason) {
    const int error = errno;
    switch (exception.GetErrorID()) {
    case CMPAException::CantOpenFile:
    case CMPAException::CantReadFromFile:
        SetCutFailure(CutReason::SourceUnreadable, src, error);
        break;
    case CMPAException::CorruptLyrics3Tag:
        SetCutFailure(CutReason::DamagedTag, src);
        break;
    default: // a seek to before the file among them
        SetCutFailure(endReason, src);
    }
    errno = error;
    exception.ShowError();
}

// The cut without its file. A source that becomes unreadable behind the last frame written costs
// the trailing tags, not the cut.
bool WriteCut(const char* src, float start, float end, bool keep) {
    bool isWritten = false;
    CutReason endReason = CutReason::NoFrame; // what an unexpected end means
    try {
        CMPAFile file(src);
        BeginWork(WorkBytes(file, end, keep));
        endReason = CutReason::SourceEndsInFrame;
        CopyLeadingTags(file);
        WriteAudio(file, start, end, keep);
        isWritten = true;
        CopyTrailingTags(file);
        EndWork();
    } catch (CMPAException& e) {
        NoteParserError(e, src, endReason);
    }
    return isWritten;
}

bool WriteAt(std::FILE* output, long long offset, const std::vector<unsigned char>& bytes) {
    return bytes.empty() || (fseeko(output, offset, SEEK_SET) == 0 &&
                             std::fwrite(bytes.data(), 1, bytes.size(), output) == bytes.size());
}

} // namespace

bool CutMP3File(const char* src, const char* dst, float start, float end, bool keep) {
    ResetCutFailure();
    const SourceWatch watch(src);
    OutputFile output(dst, src);
    if (output.GetHandle() == nullptr) {
        SetCutFailure(CutReason::OutputNotCreatable, dst, errno);
        CMPAException(CMPAException::CantOpenFile, dst, "CreateFile", true).ShowError();
        return false;
    }
    oh = output.GetHandle();
    bool isWritten = false;
    try {
        isWritten = WriteCut(src, start, end, keep);
    } catch (const CutError& e) {
        isWritten = false;
        SetCutFailure(e.reason, IsAboutOutput(e.reason) ? dst : src, e.errorNumber);
    }
    oh = nullptr;
    if (watch.HasChanged()) {
        isWritten = false;
        SetCutFailure(CutReason::SourceChanged, src);
    }
    return output.Close(isWritten);
}

int WriteFrame(CMPAFile* file, CMPAFrame* frame, int total, int index, int bytesBefore) {
    if (frame == nullptr) {
        return 0;
    }
    CopyFrame(*frame);
    const CVBRHeader* header = file->GetVBRHeader();
    if (header != nullptr && header->GetRewriteTable() != nullptr && total > 0) {
        const unsigned int slot = static_cast<unsigned int>(index) * header->GetTableSize() /
                                  static_cast<unsigned int>(total);
        if (slot > 0 && slot < header->GetTableSize() && header->GetRewriteTable()[slot] == 0) {
            header->GetRewriteTable()[slot] = static_cast<unsigned int>(bytesBefore);
        }
    }
    return static_cast<int>(frame->GetSize());
}

int GetFrameCount(CMPAFile* file) {
    const CVBRHeader* header = file->GetVBRHeader();
    if (header == nullptr || header->GetFrameCount() == 0) {
        return CountFrames(file);
    }
    constexpr unsigned int kMost = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(header->GetFrameCount(), kMost));
}

int CountFrames(CMPAFile* file) {
    int count = 0;
    for (FrameWalk walk(*file); walk.Step();) {
        ++count;
    }
    return count;
}

bool RewriteVBRHeader(std::FILE* output, CVBRHeader* header) {
    VBRFields fields = MakeVBRFields(*header);
    const long long offset = header->GetOffset() + fields.offset;
    // A header may claim more than its frame holds. What lies behind that is somebody's audio.
    const auto room = static_cast<std::size_t>(std::max(0LL, firstFrameEnd - offset));
    fields.bytes.resize(std::min(fields.bytes.size(), room));
    return WriteAt(output, offset + firstFrameShift, fields.bytes);
}
