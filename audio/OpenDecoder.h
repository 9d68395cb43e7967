#pragma once

#include "audio/Decoder.h"
#include "audio/File.h"

#include <memory>

/// Opens an audio file by its content: a RIFF, RF64 or BW64 file with libsndfile if that can read
/// it, anything else as MPEG audio.
/// @param threads  how many threads decode MPEG audio ahead; 1: the reader's own does
/// @return null when the file holds no audio, or could not be read: its Failures tell that
[[nodiscard]] std::unique_ptr<Decoder> OpenDecoder(const std::shared_ptr<const File>& file,
                                                   unsigned threads);

/// One per processor, at most 16, unless KLIPRA_DECODE_THREADS says how many.
unsigned DecodeThreads();
