#include "bitstream/SideInfo.h"

#include <algorithm>

namespace bitstream {

namespace {

/// Bits from the most significant on. At most 16 at a time.
class BitReader {
public:
    explicit BitReader(const std::uint8_t* bytes) : m_bytes(bytes) {}

    unsigned int Take(unsigned int bits) {
        unsigned int value = 0;
        while (bits > 0) {
            const unsigned int left = 8 - m_position % 8; // of the current byte
            const unsigned int taken = std::min(bits, left);
            const unsigned int part =
                (m_bytes[m_position / 8] & 0xFFU >> (8 - left)) >> (left - taken);
            value = value << taken | part;
            bits -= taken;
            m_position += taken;
        }
        return value;
    }
    void Skip(unsigned int bits) { m_position += bits; }

private:
    const std::uint8_t* m_bytes;
    unsigned int m_position = 0;
};

/// Bits before the granules: main_data_begin, private bits, scfsi.
constexpr unsigned int BeforeGranulesBits(bool isLSF, unsigned int channels) {
    return isLSF ? 8 + channels : 9 + (channels == 1 ? 5 : 3) + 4 * channels;
}

GranuleInfo ReadGranule(BitReader& reader, bool isLSF) {
    constexpr unsigned int kGainBits = 8;
    constexpr unsigned int kWindowBits = 22; // that depend on the switch
    GranuleInfo info;
    info.part2And3Bits = reader.Take(12);
    info.bigValues = reader.Take(9);
    reader.Skip(kGainBits + (isLSF ? 9 : 4)); // and scalefac_compress
    info.isWindowSwitched = reader.Take(1) != 0;
    info.blockType = reader.Take(2);
    if (!info.isWindowSwitched) {
        info.blockType = 0;
    }
    // preflag, scalefac_scale, count1table_select
    reader.Skip(kWindowBits - 2 + (isLSF ? 2 : 3));
    return info;
}

} // namespace

SideInfo SideInfo::Read(const std::uint8_t* bytes, bool isLSF, bool isSingleChannel) {
    BitReader reader(bytes);
    SideInfo info;
    info.granules = isLSF ? 1 : 2;
    info.channels = isSingleChannel ? 1 : 2;
    info.mainDataBegin = reader.Take(isLSF ? 8 : 9);
    reader.Skip(BeforeGranulesBits(isLSF, info.channels) - (isLSF ? 8 : 9));
    for (unsigned int granule = 0; granule < info.granules; ++granule) {
        for (unsigned int channel = 0; channel < info.channels; ++channel) {
            info.parts[granule][channel] = ReadGranule(reader, isLSF);
        }
    }
    return info;
}

void SideInfo::WriteMainDataBegin(std::uint8_t* bytes, bool isLSF, unsigned int begin) {
    if (isLSF) {
        bytes[0] = static_cast<std::uint8_t>(begin);
    } else {
        bytes[0] = static_cast<std::uint8_t>(begin >> 1);
        bytes[1] = static_cast<std::uint8_t>((bytes[1] & 0x7FU) | (begin & 1U) << 7);
    }
}

unsigned int SideInfo::ReadMainDataBegin(const std::uint8_t* bytes, bool isLSF) {
    return BitReader(bytes).Take(isLSF ? 8 : 9);
}

unsigned int SideInfo::MainDataBytes() const {
    unsigned int bits = 0;
    for (const auto& granule : parts) {
        for (const GranuleInfo& part : granule) {
            bits += part.part2And3Bits;
        }
    }
    return (bits + 7) / 8;
}

bool SideInfo::IsSound() const {
    for (const auto& granule : parts) {
        for (const GranuleInfo& part : granule) {
            if (part.bigValues > kMaxBigValues || (part.isWindowSwitched && part.blockType == 0)) {
                return false;
            }
        }
    }
    return true;
}

} // namespace bitstream
