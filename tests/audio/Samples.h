#pragma once

#include "audio/Decoder.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

using Samples = std::vector<std::int16_t>;

/// The bytes of a clip of tests/clips.
std::string Clip(const std::string& name);

/// Frames of MPEG audio end to end: the clip without its Info frame, so many times over.
std::string RepeatedClip(const std::string& name, int times);

/// All that is left to read, in reads of changing sizes.
Samples ReadAll(Decoder& decoder);

/// What a file decodes to with so many threads; empty when it cannot be opened.
Samples DecodeFile(const std::string& path, unsigned threads = 1);

/// What libmpg123 makes of a whole MPEG file by itself, untrimmed.
Samples ReferenceDecode(const std::string& mp3);

/// Reads at places all over the file and compares with what a decode from the beginning has there.
void ExpectSeeksAgree(Decoder& decoder, const Samples& whole);
