#pragma once

#include "fuzz/FuzzInput.h"

// The fuzz targets. Each takes any bytes for a file, does with it what a person may have done, and
// throws LawBroken where the result is not what it has to be for every file. What memory and
// arithmetic do wrong is for the sanitizers to see.

/// The parser: tags, frames in both directions, VBR header.
void FuzzParser(const FuzzInput& input);

/// The cutters, one range and mode each.
void FuzzCutMP3(const FuzzInput& input);
void FuzzCutWAV(const FuzzInput& input);

/// The cutter of whole WAV files: all samples of the source but some, and again all of the result.
void FuzzCutWholeWAV(const FuzzInput& input);

/// What is finished of an MP3, from it alone and by way of an edit; how that compares with its
/// source.
void FuzzFinish(const FuzzInput& input);

/// A decoding stream: length, seeks, levels and seek information.
void FuzzStream(const FuzzInput& input);

/// The command `info`, for people and as JSON.
void FuzzInfo(const FuzzInput& input);

/// A list of places: a CUE sheet, labels, CSV.
void FuzzList(const FuzzInput& input);

/// The journal of a session.
void FuzzJournal(const FuzzInput& input);
