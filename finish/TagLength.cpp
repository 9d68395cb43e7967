#include "finish/TagLength.h"

#include "mpeg/MPAStream.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace {

constexpr long long kHeaderBytes = 10;

struct TagFrame {
    std::string name;
    long long dataOffset = 0;
    long long dataBytes = 0;
    bool isEncoded = false; ///< compressed, encrypted or unsynchronised
};

unsigned int BigEndian(const unsigned char* bytes, unsigned int count, unsigned int bits) {
    unsigned int value = 0;
    for (unsigned int i = 0; i < count; ++i) {
        value = value << bits | (bytes[i] & ((1U << bits) - 1));
    }
    return value;
}

/// The frames of a tag, one after the other.
class TagFrames {
public:
    TagFrames(const CMPAStream& stream, long long offset, long long sizeBytes)
        : m_stream(stream), m_offset(offset + kHeaderBytes), m_end(offset + sizeBytes) {
        const unsigned char* const header = Read(offset, kHeaderBytes);
        if (std::memcmp(header, "ID3", 3) != 0 || header[3] < 2 || header[3] > 4) {
            m_end = 0;
            return;
        }
        constexpr unsigned int kUnsynchronised = 0x80;
        constexpr unsigned int kExtended = 0x40;
        m_version = header[3];
        m_isUnsynchronised = (header[5] & kUnsynchronised) != 0;
        if (m_version > 2 && (header[5] & kExtended) != 0 && m_offset + 4 <= m_end) {
            const unsigned char* const size = Read(m_offset, 4);
            m_offset += m_version == 4 ? BigEndian(size, 4, 7) : 4 + BigEndian(size, 4, 8);
        }
    }

    bool Next(TagFrame& frame) {
        const long long headerBytes = m_version == 2 ? 6 : kHeaderBytes;
        if (m_offset + headerBytes > m_end) {
            return false;
        }
        const unsigned char* const header = Read(m_offset, headerBytes);
        if (header[0] == 0) {
            return false;
        }
        const unsigned int nameBytes = m_version == 2 ? 3 : 4;
        frame.name.assign(reinterpret_cast<const char*>(header), nameBytes);
        frame.dataBytes = BigEndian(header + nameBytes, nameBytes, m_version == 4 ? 7 : 8);
        frame.dataOffset = m_offset + headerBytes;
        frame.isEncoded = m_isUnsynchronised || HasFormatFlags(header);
        m_offset = frame.dataOffset + frame.dataBytes;
        return m_offset <= m_end;
    }

private:
    bool HasFormatFlags(const unsigned char* header) const {
        constexpr unsigned int kFormatFlags = 9; // where the byte stands
        return m_version != 2 && header[kFormatFlags] != 0;
    }
    const unsigned char* Read(long long offset, long long bytes) const {
        return m_stream.ReadBytes(static_cast<unsigned int>(bytes), offset, false, false);
    }

    const CMPAStream& m_stream;
    long long m_offset;
    long long m_end;
    unsigned int m_version = 0;
    bool m_isUnsynchronised = false;
};

/// Where the digits of a text stand.
void FindDigits(const CMPAStream& stream, const TagFrame& frame, TagLength& length) {
    constexpr long long kMostBytes = 64;
    const auto count = static_cast<unsigned int>(std::min(frame.dataBytes, kMostBytes));
    long long offset = frame.dataOffset;
    const unsigned char* const data = stream.ReadBytes(count, offset, false, false);
    constexpr unsigned int kUTF16WithMark = 1;
    constexpr unsigned int kUTF16 = 2;
    const bool isWide = count > 0 && (data[0] == kUTF16WithMark || data[0] == kUTF16);
    unsigned int at = 1;
    if (isWide) {
        const bool hasMark = data[0] == kUTF16WithMark && count > 2;
        const bool isLittleEndian = hasMark && data[1] == 0xFF;
        at += (hasMark ? 2U : 0U) + (isLittleEndian ? 0U : 1U);
        length.step = 2;
    }
    length.offset = frame.dataOffset + at;
    for (; at < count && data[at] >= '0' && data[at] <= '9'; at += length.step) {
        ++length.digits;
    }
    length.isLeft = length.digits == 0;
}

} // namespace

TagLength FindTagLength(const CMPAStream& stream, long long offset, long long sizeBytes) {
    constexpr std::array kPlaces = {"MLLT", "ASPI", "SEEK", "CHAP", "ETCO",
                                    "SYLT", "MLL",  "ETC",  "SLT"};
    TagLength length;
    if (sizeBytes < kHeaderBytes) {
        return length;
    }
    TagFrames frames(stream, offset, sizeBytes);
    for (TagFrame frame; frames.Next(frame);) {
        const bool isLength = frame.name == "TLEN" || frame.name == "TLE";
        if (isLength && frame.isEncoded) {
            length.isLeft = true;
        } else if (isLength && length.digits == 0 && frame.dataBytes > 1) {
            FindDigits(stream, frame, length);
        } else if (std::ranges::find(kPlaces, frame.name) != kPlaces.end() &&
                   std::ranges::find(length.places, frame.name) == length.places.end()) {
            length.places.push_back(frame.name);
        }
    }
    return length;
}

std::string LengthDigits(double seconds, unsigned int digits) {
    const std::string text = std::to_string(std::llround(seconds * 1000.0));
    return text.size() > digits ? std::string() : std::string(digits - text.size(), '0') + text;
}
