#include "bitstream/CRC.h"

#include <array>

namespace bitstream {

namespace {

// By how many bytes follow, and by value: what a byte does to the CRC of sixteen bytes. So sixteen
// of them are taken at once, and no look-up waits for the one before.
constexpr std::size_t kSlices = 16;
using Slices = std::array<std::array<std::uint16_t, 256>, kSlices>;

constexpr Slices MakeSlices() {
    constexpr unsigned int kReflected = 0xA001;
    Slices slices{};
    for (unsigned int value = 0; value < 256; ++value) {
        unsigned int crc = value;
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 1U) != 0 ? crc >> 1 ^ kReflected : crc >> 1;
        }
        slices[0][value] = static_cast<std::uint16_t>(crc);
    }
    for (std::size_t slice = 1; slice < kSlices; ++slice) {
        for (std::size_t value = 0; value < 256; ++value) {
            const std::uint16_t crc = slices[slice - 1][value];
            slices[slice][value] = static_cast<std::uint16_t>(crc >> 8 ^ slices[0][crc & 0xFFU]);
        }
    }
    return slices;
}

constexpr Slices kTables = MakeSlices();

} // namespace

std::uint16_t FrameCRC(const std::uint8_t* header, std::span<const std::uint8_t> sideInfo) {
    constexpr unsigned int kPolynomial = 0x8005;
    unsigned int crc = 0xFFFF;
    const auto add = [&](std::uint8_t byte) {
        crc ^= static_cast<unsigned int>(byte) << 8;
        for (int bit = 0; bit < 8; ++bit) {
            crc = ((crc & 0x8000U) != 0 ? crc << 1 ^ kPolynomial : crc << 1) & 0xFFFFU;
        }
    };
    add(header[2]);
    add(header[3]);
    for (const std::uint8_t byte : sideInfo) {
        add(byte);
    }
    return static_cast<std::uint16_t>(crc);
}

void MusicCRC::Add(std::span<const std::uint8_t> bytes) {
    unsigned int crc = m_value;
    for (; bytes.size() >= kSlices; bytes = bytes.subspan(kSlices)) {
        const std::uint8_t* const at = bytes.data();
        crc = static_cast<unsigned int>(kTables[15][at[0] ^ (crc & 0xFFU)]) ^
              kTables[14][at[1] ^ crc >> 8] ^ kTables[13][at[2]] ^ kTables[12][at[3]] ^
              kTables[11][at[4]] ^ kTables[10][at[5]] ^ kTables[9][at[6]] ^ kTables[8][at[7]] ^
              kTables[7][at[8]] ^ kTables[6][at[9]] ^ kTables[5][at[10]] ^ kTables[4][at[11]] ^
              kTables[3][at[12]] ^ kTables[2][at[13]] ^ kTables[1][at[14]] ^ kTables[0][at[15]];
    }
    for (const std::uint8_t byte : bytes) {
        crc = crc >> 8 ^ kTables[0][(crc ^ byte) & 0xFFU];
    }
    m_value = static_cast<std::uint16_t>(crc);
}

} // namespace bitstream
