#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace bitstream {

/// The CRC-16 of a frame that has one (ISO/IEC 11172-3, 2.4.3.1): polynomial 0x8005, starting from
/// all ones, over the last two bytes of the header and the side information.
/// @param header    four bytes
std::uint16_t FrameCRC(const std::uint8_t* header, std::span<const std::uint8_t> sideInfo);

/// The CRC-16 that a LAME tag keeps of the audio and of itself: the same polynomial with the bits
/// in reverse order, starting from 0.
class MusicCRC {
public:
    void Add(std::span<const std::uint8_t> bytes);
    std::uint16_t Value() const { return m_value; }

private:
    std::uint16_t m_value = 0;
};

} // namespace bitstream
