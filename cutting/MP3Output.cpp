#include "cutting/MP3Output.h"

#include "cutting/CutError.h"
#include "cutting/CutMP3.h"
#include "cutting/CutSummary.h"
#include "cutting/SourceWatch.h"
#include "cutting/VBRFields.h"
#include "mpeg/MPAEndOfFileException.h"
#include "mpeg/MPAFile.h"
#include "mpeg/MPAStream.h"
#include "mpeg/Tags.h"
#include "mpeg/VBRHeader.h"
#include "mpeg/XINGHeader.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <vector>

namespace {

// The output, its path, where in it the source's first frame comes to lie (how many bytes further
// from the start than in the source), and where that frame ends in the source.
std::FILE* oh = nullptr;
std::string outputPath;
long long firstFrameShift = 0;
long long firstFrameEnd = 0;

// The product first, see FrameRange.
long long FrameNumber(double seconds, const CMPAHeader& header, float (*round)(float)) {
    const float samples =
        static_cast<float>(seconds) * static_cast<float>(header.GetSamplingRateHz());
    const float frames = round(samples / static_cast<float>(header.GetSamplesPerFrame()));
    constexpr auto kMost = static_cast<float>(1U << 31);
    return std::isnan(frames) ? 0 : static_cast<long long>(std::clamp(frames, -kMost, kMost));
}

void WriteBytes(const void* bytes, std::size_t size) {
    if (std::fwrite(bytes, 1, size, oh) != size) {
        throw CutError{CutReason::OutputNotWritable, errno, outputPath};
    }
}

bool WriteAt(std::FILE* output, long long offset, const std::vector<unsigned char>& bytes) {
    return bytes.empty() || (fseeko(output, offset, SEEK_SET) == 0 &&
                             std::fwrite(bytes.data(), 1, bytes.size(), output) == bytes.size());
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

// What the parser says is shown in its own words, and noted in ours.
void NoteParserError(CMPAException& exception, const char* source, CutReason endReason) {
    const int error = errno;
    switch (exception.GetErrorID()) {
    case CMPAException::CantOpenFile:
    case CMPAException::CantReadFromFile:
        SetCutFailure(CutReason::SourceUnreadable, source, error);
        break;
    case CMPAException::CorruptLyrics3Tag:
        SetCutFailure(CutReason::DamagedTag, source);
        break;
    default: // a seek to before the file among them
        SetCutFailure(endReason, source);
    }
    errno = error;
    exception.ShowError();
}

} // namespace

FrameRange::FrameRange(const CutRange& range, const CMPAHeader& header)
    : start(FrameNumber(range.start, header, std::floor)),
      end(FrameNumber(range.end, header, std::ceil)) {
}

MP3Output::MP3Output(const std::string& path, const char* source) : m_file(path.c_str(), source) {
    if (!IsOpen()) {
        SetCutFailure(CutReason::OutputNotCreatable, path, errno);
        CMPAException(CMPAException::CantOpenFile, path.c_str(), "CreateFile", true).ShowError();
    }
    oh = m_file.GetHandle();
    outputPath = path;
}

MP3Output::~MP3Output() {
    oh = nullptr;
}

void MP3Output::Begin(CMPAFile& source, const CMPAFrame& first) {
    m_source = &source;
    BeginCutSummary(outputPath, FrameSeconds(first), first.GetHeader()->GetSamplesPerFrame());
    for (const CTag* tag : TagsWhere(source, false)) {
        CopyTag(*source.GetStream(), *tag);
    }
    firstFrameShift = ftello(oh) - first.GetOffset();
    firstFrameEnd = first.GetOffset() + first.GetSize();
    if (source.GetVBRHeader() != nullptr) {
        CopyFrame(first);
    }
}

bool MP3Output::Write(FrameWalk& walk, long long expected) {
    const long long most = std::numeric_limits<int>::max();
    const int size =
        WriteFrame(m_source, walk.Current(), static_cast<int>(std::min(expected, most)), m_frames,
                   static_cast<int>(m_bytes));
    if (size <= 0) {
        return false;
    }
    // A VBR header's frame is the walk's number 0.
    AddToCutSummary(walk.Number() - (m_source->GetVBRHeader() == nullptr ? 0 : 1), 1);
    ++m_frames;
    m_bytes += static_cast<unsigned int>(size);
    return true;
}

void MP3Output::FinishHeader() {
    CVBRHeader* const header = m_source->GetVBRHeader();
    if (header == nullptr) {
        return;
    }
    // A count of 0 was not known before, and stays so.
    if (header->GetByteCount() != 0) {
        header->SetByteCount(m_bytes);
    }
    if (header->GetFrameCount() != 0) {
        header->SetFrameCount(static_cast<unsigned int>(m_frames));
    }
    if (!RewriteVBRHeader(oh, header)) {
        throw CutError{CutReason::OutputNotWritable, errno, outputPath};
    }
}

// The collection lists them from the end of the file backwards.
void MP3Output::CopyTrailingTags() {
    if (std::fseek(oh, 0, SEEK_END) != 0) {
        throw CutError{CutReason::OutputNotWritable, errno, outputPath};
    }
    const std::vector<const CTag*> tags = TagsWhere(*m_source, true);
    std::for_each(tags.rbegin(), tags.rend(),
                  [&](const CTag* tag) { CopyTag(*m_source->GetStream(), *tag); });
}

bool MP3Output::Close(bool cutSucceeded) {
    oh = nullptr;
    return m_file.Close(cutSucceeded);
}

bool WithMP3Source(const char* source, const std::function<void(CMPAFile&)>& write) {
    const SourceWatch watch(source);
    CutReason endReason = CutReason::NoFrame; // what an unexpected end means
    bool isWritten = false;
    try {
        CMPAFile file(source);
        endReason = CutReason::SourceEndsInFrame;
        write(file);
        isWritten = true;
    } catch (CMPAException& e) {
        NoteParserError(e, source, endReason);
    } catch (const CutError& e) {
        SetCutFailure(e.reason, e.path.empty() ? source : e.path, e.errorNumber);
    }
    if (watch.HasChanged()) {
        SetCutFailure(CutReason::SourceChanged, source);
        return false;
    }
    return isWritten;
}

long long CountInHeader(const CMPAFile& source) {
    return source.GetVBRHeader() == nullptr ? 0 : source.GetVBRHeader()->GetFrameCount();
}

double FrameSeconds(const CMPAFrame& frame) {
    const CMPAHeader& header = *frame.GetHeader();
    return static_cast<double>(header.GetSamplesPerFrame()) / header.GetSamplingRateHz();
}

bool TellsItsSize(const CMPAFile& source) {
    const CVBRHeader* const header = source.GetVBRHeader();
    if (header == nullptr) {
        return true;
    }
    // What the parser has filled in says nothing.
    const auto* const xing = dynamic_cast<const CXINGHeader*>(header);
    if (xing != nullptr && (xing->ReadFlags() & CXINGHeader::kByteCount) == 0) {
        return false;
    }
    constexpr long long kTolerance = 4096; // the header's own frame may be counted or not
    const long long size = source.GetTags()->GetEndOffset() - source.GetFirstFrame()->GetOffset();
    return std::abs(size - header->GetByteCount()) <= kTolerance;
}

long long ExpectedFrames(const FrameRange& range, long long count) {
    const long long frames = range.Distance() + 1;
    return count == 0 ? frames : std::min(frames, std::max(count - range.start, 0LL) + 1);
}

void WalkOn(FrameWalk& walk) {
    try {
        walk.Skip(std::numeric_limits<long long>::max());
    } catch (const CMPAException&) {
        // Nobody asked for what lies there.
    }
}

void WarnOfEnd(FrameWalk& walk, long long count) {
    const bool isShort = walk.Current() == nullptr && walk.Number() < count;
    const bool isOnlyStump = walk.HasFoundStump() && walk.Number() + 1 == count;
    if (count != 0 && (walk.Number() > count || (isShort && !isOnlyStump))) {
        AddCutWarning(CutWarning::FrameCountWrong);
    }
    if (walk.HasFoundStump()) {
        AddCutWarning(CutWarning::LastFrameLeftOut);
    }
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

bool RewriteVBRHeader(std::FILE* output, CVBRHeader* header) {
    VBRFields fields = MakeVBRFields(*header);
    const long long offset = header->GetOffset() + fields.offset;
    // A header may claim more than its frame holds. What lies behind that is somebody's audio.
    const auto room = static_cast<std::size_t>(std::max(0LL, firstFrameEnd - offset));
    fields.bytes.resize(std::min(fields.bytes.size(), room));
    return WriteAt(output, offset + firstFrameShift, fields.bytes);
}
