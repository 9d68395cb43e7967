#include "audio/FrameHeader.h"

#include "bitstream/FrameFacts.h"
#include "bitstream/SideInfo.h"

std::optional<FrameHeader> FrameHeader::Parse(const std::uint8_t* bytes) {
    bitstream::FrameFacts facts;
    if (bytes[0] != 0xFF || bytes[1] < 0xE0 ||
        bitstream::DecodeHeader(bytes, facts) != bitstream::HeaderState::Sound) {
        return std::nullopt;
    }
    FrameHeader header;
    header.streamBits = (bytes[1] & 0x1EU) << 8 | (bytes[2] & 0x0CU);
    header.lowSamplingRate = facts.isLSF;
    header.layer = static_cast<int>(facts.layer) + 1;
    header.crc = facts.isCRCProtected;
    header.channels = facts.IsSingleChannel() ? 1 : 2;
    header.rateHz = facts.samplingRateHz;
    header.sampleFrames = facts.SamplesPerFrame();
    header.sizeBytes = bitstream::FrameBytes(facts.isLSF, facts.layer, facts.bitrateBps,
                                             facts.samplingRateHz, facts.padding);
    header.sideInfoBytes = facts.SideInfoBytes();
    return header;
}

std::uint32_t FrameHeader::MaxReservoirBytes() const {
    return layer == 3 ? bitstream::MaxMainDataBegin(lowSamplingRate) : 0;
}
