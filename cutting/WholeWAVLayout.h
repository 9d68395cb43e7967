#pragma once

#include "cutting/CutFailure.h"

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

/// A WAV file as recorders and editors write them: RIFF, or RF64 and BW64 with their 64-bit sizes
/// (EBU Tech 3306, ITU-R BS.2088), the format anywhere before the samples, other chunks on both
/// sides of these.
struct WholeWAVLayout {
    struct Chunk {
        std::string id;       // four characters, any bytes
        long long offset = 0; // of the identifier, bytes
        long long size = 0;   // of the payload that is there, bytes

        long long Payload() const { return offset + kHeaderSize; }
        static constexpr long long kHeaderSize = 8;
    };

    std::string form;            // RIFF, RF64 or BW64
    std::uint16_t formatTag = 0; // of an extensible format (0xFFFE) that of its sub-format
    bool isExtensible = false;
    std::uint16_t channels = 0;
    std::uint32_t samplesPerSecond = 0;
    std::uint32_t bytesPerSecond = 0; // as declared
    std::uint16_t blockAlign = 0;     // bytes of one sample frame
    std::uint16_t bitsPerSample = 0;
    std::vector<Chunk> chunks; // all of the file, in order
    std::size_t dataIndex = 0; // of the samples' chunk; its size is what is there of them
    long long chunksEnd = 0;   // bytes; what follows in the file is no chunk
    long long fileSize = 0;    // bytes

    const Chunk& Data() const { return chunks[dataIndex]; }
    long long SampleFrames() const { return Data().size / blockAlign; } ///< whole ones
    double Seconds() const {
        return static_cast<double>(SampleFrames()) / static_cast<double>(samplesPerSecond);
    }
};

/// Reads the layout of a file that CutWholeWAV can cut: samples of a fixed size (PCM, floating
/// point, A-law, µ-law, also behind the extensible tag). A data size of 0, of 0xFFFFFFFF or beyond
/// the file means all that follows. An odd-sized chunk's pad byte may be missing, see WAVLayout.
/// @return None, or why it cannot be cut: CompressedWAV for samples of another format
[[nodiscard]] CutReason ReadWholeWAVLayout(std::FILE* file, WholeWAVLayout& layout);
