#pragma once

#include "cutting/CutFailure.h"
#include "cutting/CutRanges.h"
#include "cutting/WAVChunkMap.h"
#include "cutting/WAVOutput.h"

#include <span>
#include <vector>

// WAV files with everything that people and recorders put into them, see WholeWAVLayout. Positions
// are sample frames; a time in seconds is the one that it lies in, a millionth of one allowed for
// rounding. What lies behind the end means the end.
//
// All return whether everything was written. On false the outputs are deleted, and CutFailure tells
// why; a result without any sample is a failure. An output must not be the source, nor another one.
// Not re-entrant, like all cutters.

/// Writes a range, or everything but it, with every chunk of the source: those that say where
/// something is, or what the samples are like, are corrected or left out, all sizes true.
[[nodiscard]] bool CutWholeWAV(const char* src, const char* dst, double start, double end,
                               bool keep);

/// The same for the samples of several ranges, in ascending order and without overlap: what edits
/// one after the other have left over.
/// @param show  is shown the bytes of the source that are copied; may throw CutError to end that
[[nodiscard]] bool FinishWAV(const char* src, const char* dst, const std::vector<SampleRange>& kept,
                             const ShowCopied& show = {});

/// Why neither CutWAVFile nor CutWholeWAV takes a file: CompressedWAV, NotWAV, NoSamples ...; None
/// where one of them does. CutFailure stays as it is.
[[nodiscard]] CutReason WhyNoCutterTakes(const char* path);

/// CutWAVFile where that takes the source, CutWholeWAV where it does not.
[[nodiscard]] bool CutAnyWAV(const char* src, const char* dst, double start, double end, bool keep);

/// Writes several ranges, each to a file of its own, as CutAnyWAV would; but an end behind the
/// samples is their end also where CutWAVFile would read on, and a piece without samples a failure.
[[nodiscard]] bool CutWAVPieces(const char* src, std::span<const CutPiece> pieces);

/// Writes everything but several ranges, likewise.
/// @param ranges  in any order; those that touch are one
[[nodiscard]] bool CutWAVAllBut(const char* src, const char* dst, std::span<const CutRange> ranges);
