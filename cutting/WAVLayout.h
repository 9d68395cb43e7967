#pragma once

#include "cutting/CutFailure.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

/// One chunk of a RIFF file.
struct WAVChunk {
    std::string id;         // four characters, any bytes
    long long offset = 0;   // of the identifier, bytes
    std::uint32_t size = 0; // of the payload as declared, bytes
};

/// What stands before the samples of a PCM WAV file (RIFF, Multimedia Programming Interface 1.0):
/// the format and every chunk up to and including "data".
struct WAVLayout {
    std::uint16_t formatTag = 0; // 1: PCM
    std::uint16_t channels = 0;
    std::uint32_t samplesPerSecond = 0;
    std::int32_t bytesPerSecond = 0;
    std::int16_t blockAlign = 0; // bytes of one sample frame
    std::uint16_t bitsPerSample = 0;
    std::vector<WAVChunk> chunks;
    long long fileSize = 0; // bytes

    long long DataOffset() const { return chunks.back().offset + kChunkHeaderSize; }
    std::uint32_t DataSize() const {
        return chunks.back().size;
    } // declared; the file may be shorter

    static constexpr long long kChunkHeaderSize = 8;
    static constexpr long long kRIFFHeaderSize = 12;
};

/// Reads the layout of a file from its start. The chunk "fmt " must come first and be PCM; the data
/// must not be empty.
///
/// An odd-sized chunk is followed by a pad byte where the byte after it is zero, and by the next
/// chunk where it is not: there are writers that leave the pad byte out.
/// @return None, or why the file has no such layout
[[nodiscard]] CutReason ReadWAVLayout(std::FILE* file, WAVLayout& layout);
