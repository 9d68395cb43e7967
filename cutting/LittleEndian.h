#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

/// A little-endian number of 1 to 8 bytes; the bytes have to be there.
inline std::uint64_t GetLittleEndian(const std::string& bytes, std::size_t offset,
                                     std::size_t size) {
    std::uint64_t value = 0;
    for (std::size_t i = size; i > 0; --i) {
        value = value << 8 | static_cast<unsigned char>(bytes[offset + i - 1]);
    }
    return value;
}

/// The lowest bytes of a number, the lowest first.
inline std::string LittleEndian(std::uint64_t value, std::size_t size) {
    std::string bytes(size, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(value);
        value >>= 8;
    }
    return bytes;
}

/// Writes such a number over others.
inline void PutLittleEndian(std::string& bytes, std::size_t offset, std::size_t size,
                            std::uint64_t value) {
    bytes.replace(offset, size, LittleEndian(value, size));
}
