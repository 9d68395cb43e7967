#pragma once

#include "cutting/CutRanges.h"
#include "cutting/FrameWalk.h"
#include "cutting/OutputFile.h"

#include <functional>
#include <string>

/// The frames of a range: it begins in frame `start` and ends before frame `end`. The first frame
/// behind the source's first one is number 0.
struct FrameRange {
    /// In single precision throughout: where a frame boundary falls is part of what a cut is, and
    /// must not depend on who computes it.
    FrameRange(const CutRange& range, const CMPAHeader& header);

    long long Distance() const { return end - start; }

    long long start;
    long long end;
};

/// The file that an MP3 cut writes: whole frames of the source between its tags, and before them
/// the frame of its VBR header, which is made to describe the new file. One at a time.
///
/// All that write throw CutError when that fails or the cut has been cancelled, and CMPAException
/// when the source cannot be read.
class MP3Output {
public:
    /// Creates the file. Where that fails, shows it as the parser shows what it cannot open, and
    /// CutFailure tells.
    MP3Output(const std::string& path, const char* source);
    MP3Output(const MP3Output&) = delete;
    MP3Output& operator=(const MP3Output&) = delete;
    ~MP3Output();

    bool IsOpen() const { return m_file.GetHandle() != nullptr; }

    /// Everything that stands before the frames.
    /// @param first  the source's first frame
    void Begin(CMPAFile& source, const CMPAFrame& first);

    /// Writes the frame that a walk stands at. Returns false for none.
    /// @param expected  how many frames will be written, for the seek table; 0 or less: not known
    bool Write(FrameWalk& walk, long long expected);

    /// Steps to the next frame and writes it. Returns false at the end.
    bool WriteNext(FrameWalk& walk, long long expected) {
        walk.Step();
        return Write(walk, expected);
    }

    int FramesWritten() const { return m_frames; } ///< that of the VBR header does not count

    /// Makes the VBR header describe what has been written.
    void FinishHeader();

    /// Everything that stands behind the frames.
    void CopyTrailingTags();

    /// See OutputFile::Close.
    bool Close(bool cutSucceeded);

private:
    OutputFile m_file;
    CMPAFile* m_source = nullptr;
    int m_frames = 0;
    unsigned int m_bytes = 0;
};

/// Parses the source and has something written from it. Whatever is thrown then ends in CutFailure;
/// what the parser has to say is shown in its own words too.
/// @return whether nothing was thrown, and the source is still what it was
[[nodiscard]] bool WithMP3Source(const char* source, const std::function<void(CMPAFile&)>& write);

/// The number of frames after the first one that the source's VBR header tells; 0 for none.
long long CountInHeader(const CMPAFile& source);

/// Whether the VBR header counts about as many bytes as there are, or there is none. One that does
/// not tells of another file: of the first of two that were joined, of one that was cut off.
bool TellsItsSize(const CMPAFile& source);

/// How long a frame plays.
double FrameSeconds(const CMPAFrame& frame);

/// How many frames of a range are to be expected, for the seek table: an end behind the audio means
/// its end, as the header tells it.
/// @param count  see CountInHeader
long long ExpectedFrames(const FrameRange& range, long long count);

/// Walks to the end, or as far as the file can be read: what was to be written has been, and the
/// rest is only looked at.
void WalkOn(FrameWalk& walk);

/// Warns of what a walk has come across: more frames than the header tells or, at the end, fewer; a
/// stump.
/// @param count  see CountInHeader; of before the header was changed
void WarnOfEnd(FrameWalk& walk, long long count);
