#pragma once

#include "cutting/CutRanges.h"

#include <cstdio>
#include <span>

class CMPAFile;
class CMPAFrame;
class CVBRHeader;

/// Writes a time range of an MPEG audio file, or everything but that range, to a new file: whole
/// frames, byte for byte, between the tags of the source. A VBR header keeps its frame and is
/// rewritten to describe the new file.
///
/// Without a VBR header the source's first frame is not copied. Of a range that is cut out both
/// boundary frames stay, and the source's last frame goes.
///
/// @param src    the source, only read
/// @param dst    the output; an existing file is overwritten. Not the source itself
/// @param start  seconds from the beginning of the audio, not greater than end
/// @param end    seconds
/// @param keep   true: write only the range; false: everything but the range
/// @return whether the output was written, also when no frame lies in the range. On false dst is
/// deleted and CutFailure tells why; what the parser had to say has been shown with ShowErrorMsg,
/// on this thread.
///
/// Not re-entrant, like all cutters: the output is held in a variable of the module.
[[nodiscard]] bool CutMP3File(const char* src, const char* dst, float start, float end, bool keep);

/// CutMP3File for people: a frame at the end of the file that it holds only the beginning of is
/// left out, where the other one fails; a result without any frame is a failure, and so is a source
/// that becomes unreadable behind its audio. CutWarnings tells what was found on the way.
[[nodiscard]] bool CutMP3WholeFrames(const char* src, const char* dst, float start, float end,
                                     bool keep);

/// Writes several ranges, each to a file of its own, in one walk over the source: the very files
/// that CutMP3WholeFrames would write. Their order is free, and they may overlap.
/// @return whether all outputs were written. On false all of them are deleted, and CutFailure tells
/// why. An output must not be another one.
[[nodiscard]] bool CutMP3Pieces(const char* src, std::span<const CutPiece> pieces);

/// Writes everything but several ranges, in one walk: every frame that touches none of them, the
/// first and the last one included, and the frame that each range begins in. Tags, VBR header and
/// what is wrong as for CutMP3WholeFrames.
/// @param ranges  in any order; those that touch are one
[[nodiscard]] bool CutMP3AllBut(const char* src, const char* dst, std::span<const CutRange> ranges);

/// Copies one frame to the output of the cut under way and notes where it lies there in the VBR
/// header's rewrite table.
/// @param total        how many frames the cut is expected to write; 0 or less: nothing is noted
/// @param index        frames written before this one
/// @param bytesBefore  bytes of frames written before this one, as an unsigned number
/// @return the frame's size in bytes; 0 for a null frame and when it could not be written.
/// Throws CMPAException when the frame cannot be read.
int WriteFrame(CMPAFile* file, CMPAFrame* frame, int total, int index, int bytesBefore);

/// The number of frames after the first one: from the VBR header, or counted where that has none.
/// Throws CMPAException when the file cannot be read.
int GetFrameCount(CMPAFile* file);

/// Counts the frames after the first one by a walk to the end of the audio. Throws CMPAException
/// when the file cannot be read.
int CountFrames(CMPAFile* file);

/// Writes the header's counts and, for Xing/Info, a seek table made from its rewrite table into the
/// output of the cut under way: every field that the header holds, and no other, as far as they lie
/// in the header's frame.
/// @return whether all was written. Throws CMPAException when the source cannot be read.
[[nodiscard]] bool RewriteVBRHeader(std::FILE* output, CVBRHeader* header);
