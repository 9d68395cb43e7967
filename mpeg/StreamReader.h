#pragma once

#include "bitstream/TagSizes.h"
#include "mpeg/MPAStream.h"

/// Reads a stream for the functions that recognise and measure tags; throws like CMPAStream.
/// @param reverse  the next reads lie before
inline bitstream::TagReader StreamReader(CMPAStream* stream, bool reverse) {
    return [=](long long offset, unsigned int count) -> std::string_view {
        return {reinterpret_cast<const char*>(stream->ReadBytes(count, offset, false, reverse)),
                count};
    };
}
