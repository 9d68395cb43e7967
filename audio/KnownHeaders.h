#pragma once

#include "audio/FrameHeader.h"

#include <array>
#include <cstdint>

/// Parses headers, and remembers what came of them: those of one stream differ in bitrate, padding
/// and what decoding need not know, and a walk over ten hours meets the same few more than a
/// million times. One thread at a time.
class KnownHeaders {
public:
    /// @param bytes  FrameHeader::kBytes of them
    /// @return what FrameHeader::Parse says of them, null for nothing; valid until the next call
    const FrameHeader* Parse(const std::uint8_t* bytes) {
        const std::uint32_t bits = static_cast<std::uint32_t>(bytes[1]) << 16 |
                                   static_cast<std::uint32_t>(bytes[2] & kLastRelevant) << 8 |
                                   (bytes[3] & kOfModeAndEmphasis);
        Known& known = m_known[bytes[2] >> 4][bytes[2] >> 1 & 1];
        return bytes[0] == 0xFF && known.bits == bits ? &known.header
                                                      : ParseAnew(bytes, bits, known);
    }

private:
    // The private bit, the mode extension, copyright and original say nothing that is looked at.
    static constexpr std::uint8_t kLastRelevant = 0xFE;
    static constexpr std::uint8_t kOfModeAndEmphasis = 0xC3;

    struct Known {
        std::uint32_t bits = 0; // behind the first byte; 0 is none that parses
        FrameHeader header;
    };

    static const FrameHeader* ParseAnew(const std::uint8_t* bytes, std::uint32_t bits,
                                        Known& known);

    std::array<std::array<Known, 2>, 16> m_known; // by bitrate and padding
};
