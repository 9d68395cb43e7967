#pragma once

/// Writes a time range of a PCM WAV file, or everything but that range, to a new file: whole sample
/// frames, behind the chunks that stand before the samples in the source. What follows the samples
/// there is not copied.
///
/// Times become bytes in single precision and are rounded down to a sample frame. An end beyond the
/// samples is taken as it stands: what follows them in the file is then read as samples. Of a file
/// that ends before the range does, whole blocks (see OutputData) are copied.
///
/// @param src    the source, only read; up to 4 GiB
/// @param dst    the output; an existing file is overwritten. Not the source itself
/// @param start  seconds from the beginning of the audio, not greater than end
/// @param end    seconds
/// @param keep   true: write only the range; false: everything but the range
/// @return whether the output was written. On false dst is deleted, and CutFailure tells why.
///
/// Not re-entrant: both files are held in variables of the module.
[[nodiscard]] bool CutWAVFile(const char* src, const char* dst, float start, float end, bool keep);

/// Copies bytes from the source to the output of the cut under way, in blocks of 4096: of a source
/// that ends before them, only whole blocks are copied.
/// @param count  bytes; 0 or less copies nothing
/// @return the number of bytes copied
long long OutputData(long long count);
