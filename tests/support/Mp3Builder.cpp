#include "tests/support/Mp3Builder.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <stdexcept>

namespace {

// ISO/IEC 11172-3, 2.4.2.3 and 13818-3, 2.4.2.3, kbit/s from bitrate index 1 on.
using Bitrates = std::array<unsigned int, 14>;
constexpr Bitrates kMPEG1Bitrates[] = {
    {32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
    {32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
    {32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},
};
constexpr Bitrates kLSFLayerI = {32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256};
constexpr Bitrates kLSFLayersIIAndIII = {8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160};
constexpr std::array<unsigned int, 3> kMPEG1Rates = {44100, 48000, 32000};

template <typename Table>
unsigned int IndexOf(const Table& table, unsigned int value) {
    const auto found = std::find(table.begin(), table.end(), value);
    if (found == table.end()) {
        throw std::invalid_argument("no such frame: " + std::to_string(value));
    }
    return static_cast<unsigned int>(found - table.begin());
}

std::string Synchsafe(unsigned int value) {
    return BigEndian((value & 0x7FU) | (value << 1 & 0x7F00U) | (value << 2 & 0x7F0000U) |
                     (value << 3 & 0x7F000000U));
}

std::string Byte(unsigned int value) {
    return BigEndian(value, 1);
}

std::string LittleEndian(unsigned int value) {
    const std::string bigEndian = BigEndian(value);
    return {bigEndian.rbegin(), bigEndian.rend()};
}

std::string Padded(std::string text, unsigned int bytes) {
    text.resize(bytes, ' ');
    return text;
}

} // namespace

std::string FrameFormat::Header() const {
    const Bitrates& bitrates = version == 3 ? kMPEG1Bitrates[layer - 1]
                               : layer == 1 ? kLSFLayerI
                                            : kLSFLayersIIAndIII;
    const unsigned int rateDivisor = version == 3 ? 1 : version == 2 ? 2 : 4;
    return Byte(0xFF) + Byte(0xE0U | version << 3 | (4 - layer) << 1 | (isProtected ? 0U : 1U)) +
           Byte((IndexOf(bitrates, bitrateKbps) + 1) << 4 |
                IndexOf(kMPEG1Rates, rateHz * rateDivisor) << 2 | (isPadded ? 2U : 0U)) +
           Byte(channelMode << 6 | modeExtension << 4 | emphasis);
}

unsigned int FrameFormat::SizeBytes() const {
    const unsigned int samples = layer == 1 ? 384 : layer == 3 && version != 3 ? 576 : 1152;
    const unsigned int slotBytes = layer == 1 ? 4 : 1;
    return (samples / 8 / slotBytes * bitrateKbps * 1000 / rateHz + (isPadded ? 1 : 0)) * slotBytes;
}

Mp3Builder& Mp3Builder::Format(const FrameFormat& format) {
    m_format = format;
    return *this;
}

Mp3Builder& Mp3Builder::Frames(unsigned int count) {
    const std::string header = m_format.Header();
    for (; count > 0; --count) {
        const std::size_t number = m_frames.size();
        m_frames.push_back({Size(), m_format.SizeBytes()});
        m_bytes += header;
        for (unsigned int i = 4; i < m_format.SizeBytes(); ++i) {
            m_bytes += static_cast<char>((i % 2 == 0 ? number >> 7 : number) & 0x7FU);
        }
    }
    return *this;
}

Mp3Builder& Mp3Builder::Xing(unsigned int flags, unsigned int frameCount, unsigned int byteCount,
                             unsigned int quality, const char* identifier) {
    std::string header = identifier + BigEndian(flags);
    header += (flags & 1U) != 0 ? BigEndian(frameCount) : "";
    header += (flags & 2U) != 0 ? BigEndian(byteCount) : "";
    for (unsigned int i = 0; (flags & 4U) != 0 && i < 100; ++i) {
        header += Byte(i * 256 / 100);
    }
    header += (flags & 8U) != 0 ? BigEndian(quality) : "";

    const bool isMono = m_format.channelMode == 3;
    const long long sideInfoBytes = m_format.version == 3 ? (isMono ? 17 : 32) : (isMono ? 9 : 17);
    m_vbrHeaderOffset = Size() + 4 + sideInfoBytes;
    return Frames(1).Patch(m_vbrHeaderOffset, header);
}

Mp3Builder& Mp3Builder::Vbri(unsigned int frameCount, unsigned int byteCount) {
    // Version 1, no delay, quality 75; the entries less one, scale 1, two bytes and a frame each.
    std::string header = "VBRI";
    for (const unsigned int field : {1U, 0U, 75U, byteCount >> 16, byteCount, frameCount >> 16,
                                     frameCount, 2U, 1U, 2U, 1U, 417U, 417U, 417U}) {
        header += BigEndian(field & 0xFFFFU, 2);
    }
    m_vbrHeaderOffset = Size() + 36;
    return Frames(1).Patch(m_vbrHeaderOffset, header);
}

Mp3Builder& Mp3Builder::Lame(const std::string& encoder) {
    return Patch(m_vbrHeaderOffset + 120,
                 encoder + Byte(0x13) + Byte(160) + std::string(9, '\0') + Byte(128));
}

Mp3Builder& Mp3Builder::Id3v1(unsigned char track) {
    return Tag("TAG" + std::string(122, '.') +
               (track == 0 ? std::string(2, '.') : Byte(0) + Byte(track)) + Byte(12));
}

Mp3Builder& Mp3Builder::Id3v2(unsigned int contentBytes, bool hasFooter) {
    const std::string fields =
        Byte(hasFooter ? 4 : 3) + Byte(0) + Byte(hasFooter ? 0x10 : 0) + Synchsafe(contentBytes);
    return Tag("ID3" + fields + std::string(contentBytes, '.') + (hasFooter ? "3DI" + fields : ""));
}

Mp3Builder& Mp3Builder::Ape(unsigned int itemBytes, bool hasHeader, unsigned int version) {
    const unsigned int flags = hasHeader ? 1U << 31 : 0;
    const std::string fields =
        "APETAGEX" + LittleEndian(version) + LittleEndian(itemBytes + 32) + LittleEndian(0);
    const std::string reserved(8, '\0');
    const std::string header = fields + LittleEndian(flags | 1U << 29) + reserved;
    return Tag((hasHeader ? header : "") + std::string(itemBytes, '.') + fields +
               LittleEndian(flags) + reserved);
}

Mp3Builder& Mp3Builder::Lyrics3v1(unsigned int textBytes) {
    return Tag("LYRICSBEGIN" + std::string(textBytes, '.') + "LYRICSEND");
}

Mp3Builder& Mp3Builder::Lyrics3v2(unsigned int fieldBytes) {
    const std::string fields = "LYRICSBEGIN" + std::string(fieldBytes, '.');
    const std::string size = std::to_string(fields.size());
    return Tag(fields + std::string(6 - size.size(), '0') + size + "LYRICS200");
}

Mp3Builder& Mp3Builder::MusicMatch(unsigned int imageBytes, unsigned int metadataBytes,
                                   bool hasHeader) {
    const std::string section = Padded("18273645", 256);
    const unsigned int imageOffset = 256;
    const std::string offsets = LittleEndian(imageOffset) + LittleEndian(imageOffset + 4) +
                                LittleEndian(0) + LittleEndian(imageOffset + imageBytes) +
                                LittleEndian(imageOffset + imageBytes + 256);
    return Tag((hasHeader ? section : "") + std::string(imageBytes, '.') + section +
               std::string(metadataBytes, '.') + offsets + Padded("Brava Software Inc.", 32) +
               Padded(metadataBytes == 7868 ? "3.00" : "3.05", 16));
}

Mp3Builder& Mp3Builder::Raw(const std::string& bytes) {
    m_bytes += bytes;
    return *this;
}

Mp3Builder& Mp3Builder::Truncate(unsigned int count) {
    m_bytes.resize(m_bytes.size() - count);
    return *this;
}

Mp3Builder& Mp3Builder::Patch(long long offset, const std::string& bytes) {
    const auto begin = static_cast<std::size_t>(offset < 0 ? Size() + offset : offset);
    m_bytes.resize(std::max(m_bytes.size(), begin + bytes.size()), '.');
    m_bytes.replace(begin, bytes.size(), bytes);
    return *this;
}

std::string Mp3Builder::BytesOf(const Extent& piece) const {
    return m_bytes.substr(static_cast<std::size_t>(piece.offset), piece.size);
}

Mp3Builder& Mp3Builder::Tag(const std::string& bytes) {
    m_tags.push_back({Size(), static_cast<unsigned int>(bytes.size())});
    return Raw(bytes);
}

std::string BigEndian(unsigned int value, unsigned int bytes) {
    std::string result;
    for (unsigned int i = bytes; i > 0; --i) {
        result += static_cast<char>(i > 4 ? 0 : value >> (8 * (i - 1)) & 0xFFU);
    }
    return result;
}
