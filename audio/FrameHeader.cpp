#include "audio/FrameHeader.h"

namespace {

constexpr std::uint32_t kVersion25 = 0;
constexpr std::uint32_t kVersionReserved = 1;
constexpr std::uint32_t kVersion1 = 3;
constexpr std::uint32_t kSingleChannel = 3;
constexpr std::uint32_t kEmphasisReserved = 2;

// kbit/s by MPEG 1 or not, layer - 1, bitrate index; index 0 is the free format.
constexpr std::uint16_t kBitrates[2][3][15] = {
    {{0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
     {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
     {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320}},
    {{0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
     {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160},
     {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160}},
};

constexpr std::uint16_t kRatesOfVersion1[3] = {44100, 48000, 32000};

// MPEG 1 Layer II: bit n is set when bitrate index n goes with this channel count (11172-3,
// 2.4.2.3).
constexpr std::uint32_t kLayer2SingleChannelBitrates = 0x07FF;
constexpr std::uint32_t kLayer2TwoChannelBitrates = 0x7FD1;

std::uint32_t SampleFrames(int layer, bool lowSamplingRate) {
    if (layer == 1) {
        return 384;
    }
    return layer == 3 && lowSamplingRate ? 576 : 1152;
}

std::uint32_t SizeBytes(int layer, std::uint32_t sampleFrames, std::uint32_t bitrateBps,
                        std::uint32_t rateHz, std::uint32_t padding) {
    // A Layer I slot is four bytes long, and padding adds one slot (11172-3, 2.4.3.1).
    const std::uint32_t slotBytes = layer == 1 ? 4 : 1;
    return (sampleFrames / 8 / slotBytes * bitrateBps / rateHz + padding) * slotBytes;
}

std::uint32_t SideInfoBytes(bool lowSamplingRate, std::uint32_t channels) {
    if (lowSamplingRate) {
        return channels == 1 ? 9 : 17;
    }
    return channels == 1 ? 17 : 32;
}

} // namespace

std::optional<FrameHeader> FrameHeader::Parse(const std::uint8_t* bytes) {
    if (bytes[0] != 0xFF || bytes[1] < 0xE0) {
        return std::nullopt;
    }
    const std::uint32_t version = bytes[1] >> 3 & 3;
    const std::uint32_t layerBits = bytes[1] >> 1 & 3;
    const std::uint32_t bitrateIndex = bytes[2] >> 4;
    const std::uint32_t rateIndex = bytes[2] >> 2 & 3;
    if (version == kVersionReserved || layerBits == 0 || bitrateIndex == 0 || bitrateIndex == 15 ||
        rateIndex == 3 || (bytes[3] & 3) == kEmphasisReserved) {
        return std::nullopt;
    }

    FrameHeader header;
    header.streamBits = (bytes[1] & 0x1EU) << 8 | (bytes[2] & 0x0CU);
    header.lowSamplingRate = version != kVersion1;
    header.layer = 4 - static_cast<int>(layerBits);
    header.crc = (bytes[1] & 1) == 0;
    header.channels = bytes[3] >> 6 == kSingleChannel ? 1 : 2;
    const std::uint32_t allowed =
        header.channels == 1 ? kLayer2SingleChannelBitrates : kLayer2TwoChannelBitrates;
    if (header.layer == 2 && !header.lowSamplingRate && (allowed >> bitrateIndex & 1) == 0) {
        return std::nullopt;
    }
    header.rateHz = kRatesOfVersion1[rateIndex];
    if (header.lowSamplingRate) {
        header.rateHz /= version == kVersion25 ? 4 : 2;
    }
    header.sampleFrames = SampleFrames(header.layer, header.lowSamplingRate);
    const std::uint32_t kbps =
        kBitrates[header.lowSamplingRate ? 1 : 0][header.layer - 1][bitrateIndex];
    header.sizeBytes =
        SizeBytes(header.layer, header.sampleFrames, kbps * 1000, header.rateHz, bytes[2] >> 1 & 1);
    header.sideInfoBytes = SideInfoBytes(header.lowSamplingRate, header.channels);
    return header;
}

std::uint32_t FrameHeader::MainDataBytes() const {
    const std::uint32_t overhead =
        static_cast<std::uint32_t>(kBytes) + (crc ? 2 : 0) + sideInfoBytes;
    return layer == 3 && sizeBytes > overhead ? sizeBytes - overhead : 0;
}

std::uint32_t FrameHeader::MaxReservoirBytes() const {
    // main_data_begin has nine bits (11172-3, 2.4.1.7), with low sampling rates eight.
    return layer != 3 ? 0 : lowSamplingRate ? 255 : 511;
}
