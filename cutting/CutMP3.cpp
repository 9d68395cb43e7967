#include "cutting/CutMP3.h"

#include "cutting/OutputFile.h"
#include "cutting/VBRFields.h"
#include "mpeg/MPAEndOfFileException.h"
#include "mpeg/MPAFile.h"
#include "mpeg/MPAStream.h"
#include "mpeg/Tags.h"
#include "mpeg/VBRHeader.h"

#include <algorithm>
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

bool WriteBytes(const void* bytes, std::size_t size) {
    return std::fwrite(bytes, 1, size, oh) == size;
}

// In pieces: a tag with pictures may be larger than anything else that a cut holds in memory.
bool CopyTag(const CMPAStream& stream, const CTag& tag) {
    constexpr unsigned int kPieceBytes = 64 * 1024;
    long long offset = tag.GetOffset();
    for (unsigned int left = tag.GetSize(); left > 0;) {
        const unsigned int size = std::min(left, kPieceBytes);
        if (!WriteBytes(stream.ReadBytes(size, offset, true, false), size)) {
            return false;
        }
        left -= size;
    }
    return true;
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

bool CopyLeadingTags(const CMPAFile& file) {
    const std::vector<const CTag*> tags = TagsWhere(file, false);
    return std::all_of(tags.begin(), tags.end(),
                       [&](const CTag* tag) { return CopyTag(*file.GetStream(), *tag); });
}

// The collection lists them from the end of the file backwards.
bool CopyTrailingTags(const CMPAFile& file) {
    const std::vector<const CTag*> tags = TagsWhere(file, true);
    return std::fseek(oh, 0, SEEK_END) == 0 &&
           std::all_of(tags.rbegin(), tags.rend(),
                       [&](const CTag* tag) { return CopyTag(*file.GetStream(), *tag); });
}

bool CopyFrame(const CMPAFrame& frame) {
    const CMPAStream& stream = *frame.GetStream();
    long long offset = frame.GetOffset();
    try {
        return WriteBytes(stream.ReadBytes(frame.GetSize(), offset, false, false), frame.GetSize());
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

bool UpdateVBRHeader(CVBRHeader& header, const Written& written) {
    // A count of 0 was not known before, and stays so.
    if (header.GetByteCount() != 0) {
        header.SetByteCount(written.bytes);
    }
    if (header.GetFrameCount() != 0) {
        header.SetFrameCount(static_cast<unsigned int>(written.frames));
    }
    return RewriteVBRHeader(oh, &header);
}

bool WriteAudio(CMPAFile& file, float start, float end, bool keep) {
    FrameWalk walk(file);
    const CMPAFrame* first = walk.Current();
    if (first == nullptr) {
        SetCutFailure("no frame found");
        return false;
    }
    firstFrameShift = ftello(oh) - first->GetOffset();
    firstFrameEnd = first->GetOffset() + first->GetSize();
    if (file.GetVBRHeader() != nullptr && !CopyFrame(*first)) {
        return false;
    }
    const CMPAHeader& header = *first->GetHeader();
    const FrameRange range{FrameNumber(start, header, std::floor),
                           FrameNumber(end, header, std::ceil)};
    const Written written = keep ? WriteRange(file, range) : WriteAllButRange(file, range);
    return file.GetVBRHeader() == nullptr || UpdateVBRHeader(*file.GetVBRHeader(), written);
}

// The cut without its file. A source that becomes unreadable behind the last frame written costs
// the trailing tags, not the cut.
bool WriteCut(const char* src, float start, float end, bool keep) {
    bool result = false;
    try {
        CMPAFile file(src);
        result = CopyLeadingTags(file) && WriteAudio(file, start, end, keep);
        result = result && CopyTrailingTags(file);
    } catch (CMPAException& e) {
        e.ShowError();
    }
    return result;
}

bool WriteAt(std::FILE* output, long long offset, const std::vector<unsigned char>& bytes) {
    return bytes.empty() || (fseeko(output, offset, SEEK_SET) == 0 &&
                             std::fwrite(bytes.data(), 1, bytes.size(), output) == bytes.size());
}

} // namespace

bool CutMP3File(const char* src, const char* dst, float start, float end, bool keep) {
    SetCutFailure("");
    OutputFile output(dst, src);
    if (output.GetHandle() == nullptr) {
        CMPAException(CMPAException::CantOpenFile, dst, "CreateFile", true).ShowError();
        return false;
    }
    oh = output.GetHandle();
    const bool result = WriteCut(src, start, end, keep);
    oh = nullptr;
    return output.Close(result);
}

int WriteFrame(CMPAFile* file, CMPAFrame* frame, int total, int index, int bytesBefore) {
    if (frame == nullptr || !CopyFrame(*frame)) {
        return 0;
    }
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
