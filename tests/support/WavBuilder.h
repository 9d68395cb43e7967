#pragma once

#include <cstdint>
#include <string>

/// Builds WAV files for tests. Every field stands as given; nothing is checked. Those that follow
/// from others are, unless given, those of 16-bit samples.
struct WavBuilder {
    std::uint16_t formatTag = 1;
    std::uint16_t channels = 2;
    std::uint32_t rateHz = 44100;
    std::int32_t bytesPerSecond = static_cast<std::int32_t>(rateHz * channels * 2);
    std::int16_t blockAlign = static_cast<std::int16_t>(channels * 2);
    std::uint32_t formatSize = 16; ///< as declared
    std::string formatExtension{}; ///< what follows the 16 bytes of the format
    std::string chunksBefore{};    ///< between the format and the samples
    std::string samples{};
    std::int64_t dataSize = -1; ///< as declared; negative: that of the samples
    std::string after{};        ///< behind the samples

    /// Everything up to the samples, the header of their chunk included.
    std::string Header() const {
        const auto declared = dataSize < 0 ? static_cast<std::uint32_t>(samples.size())
                                           : static_cast<std::uint32_t>(dataSize);
        return "RIFF" + Number(4, 0x12345678) + "WAVEfmt " + Number(4, formatSize) +
               Number(2, formatTag) + Number(2, channels) + Number(4, rateHz) +
               Number(4, static_cast<std::uint32_t>(bytesPerSecond)) +
               Number(2, static_cast<std::uint16_t>(blockAlign)) + Number(2, 16) + formatExtension +
               chunksBefore + "data" + Number(4, declared);
    }

    std::string Bytes() const { return Header() + samples + after; }

    static std::string Chunk(const std::string& id, const std::string& payload) {
        return id + Number(4, static_cast<std::uint32_t>(payload.size())) + payload;
    }

    /// Bytes that differ from their neighbours, so that a wrong offset shows.
    static std::string Pattern(std::size_t size) {
        std::string bytes(size, '\0');
        for (std::size_t i = 0; i < size; ++i) {
            bytes[i] = static_cast<char>(i % 251 + i / 251);
        }
        return bytes;
    }

    /// A little-endian number.
    static std::string Number(int size, std::uint32_t value) {
        std::string bytes;
        for (int i = 0; i < size; ++i) {
            bytes += static_cast<char>(value >> 8 * i);
        }
        return bytes;
    }
};
