#include "cutting/CutMP3.h"

#include "cutting/CutError.h"
#include "cutting/CutWork.h"
#include "cutting/FrameWalk.h"
#include "cutting/MP3Output.h"
#include "mpeg/MPAFile.h"
#include "mpeg/MPAStream.h"
#include "mpeg/VBRHeader.h"

#include <algorithm>
#include <limits>

namespace {

/// How strict a cut is.
struct Rules {
    FrameWalk::Stump stump;
    bool mayBeEmpty;    // a result without any frame
    bool mayLoseTags;   // where only the trailing tags cannot be read
    bool endsWithAudio; // an end behind the audio means its end, for the seek table too
};
constexpr Rules kPlain{FrameWalk::Stump::Frame, true, true, false};
constexpr Rules kWholeFrames{FrameWalk::Stump::NoFrame, false, false, true};

// As many frames as the range has, or there are.
// @param expected  for the seek table
void WriteRange(MP3Output& output, FrameWalk& walk, const FrameRange& range, long long expected) {
    if (range.end < range.start) {
        return;
    }
    walk.Skip(range.start);
    const long long most = range.Distance() + 1;
    while (output.FramesWritten() < most && output.WriteNext(walk, expected)) {
    }
}

void WriteAllButRange(CMPAFile& file, MP3Output& output, FrameWalk& walk, FrameRange range,
                      const Rules& rules) {
    const long long count = GetFrameCount(&file);
    if (rules.endsWithAudio) {
        range.end = std::clamp(range.end, range.start, std::max(range.start, count));
    }
    const long long expected = count - range.Distance() + 1;
    while (output.FramesWritten() <= range.start && output.WriteNext(walk, expected)) {
    }
    walk.Skip(range.Distance() - 1);
    while (walk.Current() != nullptr && output.FramesWritten() + 1 < expected &&
           output.WriteNext(walk, expected)) {
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

void WriteAudio(CMPAFile& file, MP3Output& output, const CutRange& range, bool keep,
                const Rules& rules) {
    FrameWalk walk(file, rules.stump);
    if (walk.Current() == nullptr) {
        throw CutError{CutReason::NoFrame};
    }
    output.Begin(file, *walk.Current());
    const long long count = CountInHeader(file);
    const bool isTrusted = TellsItsSize(file);
    const FrameRange frames(range, *walk.Current()->GetHeader());
    if (keep) {
        WriteRange(output, walk, frames,
                   ExpectedFrames(frames, rules.endsWithAudio && isTrusted ? count : 0));
    } else {
        WriteAllButRange(file, output, walk, frames, rules);
    }
    if (rules.stump == FrameWalk::Stump::NoFrame) {
        // The end is far away: it is looked at where there is a doubt. A removal stops just before
        // it.
        isTrusted ? walk.Skip(keep ? 0 : 2) : WalkOn(walk);
        WarnOfEnd(walk, count);
    }
    if (output.FramesWritten() == 0 && !rules.mayBeEmpty) {
        throw CutError{keep ? CutReason::NoAudioInRange : CutReason::NothingLeft};
    }
    output.FinishHeader();
}

void CopyTags(MP3Output& output, const Rules& rules) {
    try {
        output.CopyTrailingTags();
    } catch (CMPAException& e) {
        if (!rules.mayLoseTags) {
            throw;
        }
        e.ShowError();
    }
}

bool CutMP3(const char* src, const char* dst, float start, float end, bool keep,
            const Rules& rules) {
    ResetCutFailure();
    MP3Output output(dst, src);
    if (!output.IsOpen()) {
        return false;
    }
    const bool isWritten = WithMP3Source(src, [&](CMPAFile& file) {
        BeginWork(WorkBytes(file, end, keep));
        WriteAudio(file, output, {start, end}, keep, rules);
        CopyTags(output, rules);
        EndWork();
    });
    return output.Close(isWritten);
}

} // namespace

bool CutMP3File(const char* src, const char* dst, float start, float end, bool keep) {
    return CutMP3(src, dst, start, end, keep, kPlain);
}

bool CutMP3WholeFrames(const char* src, const char* dst, float start, float end, bool keep) {
    return CutMP3(src, dst, start, end, keep, kWholeFrames);
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
