#pragma once

#include "cutting/WAVLayout.h"
#include "cutting/WAVOutput.h"

#include <vector>

/// The samples of a range, as offsets in the payload of the data chunk; whole sample frames.
struct ByteRange {
    long long start;
    long long end;
};

/// The bytes that a time range means, see CutWAVFile; an end may lie behind the samples.
ByteRange PlainBytes(const WAVLayout& layout, float startSeconds, float endSeconds);

/// Throws CutError where the plain cutter refuses the source.
WAVLayout ReadPlain(const WAVSource& source);

/// Writes what stands before the samples, some of these, and the sizes. Throws CutError.
void WritePlain(WAVOutput& output, const WAVLayout& layout, const std::vector<ByteRange>& ranges);
