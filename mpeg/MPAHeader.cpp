#include "mpeg/MPAHeader.h"

#include "mpeg/MPAStream.h"

namespace {

constexpr unsigned short kSubbands = 32;
constexpr unsigned int kReservedVersion = 1;
constexpr unsigned int kMPEG1 = 3;
constexpr unsigned int kLayerII = 1;
constexpr unsigned int kReservedLayer = 3;
constexpr unsigned int kReservedBitrateIndex = 15;
constexpr unsigned int kReservedSamplingRateIndex = 3;
constexpr unsigned int kReservedEmphasis = 2;

// Eleven sync bits, and a third byte whose bitrate index is not the reserved one: cheap enough to
// ask at every byte of a search.
bool IsCandidate(const unsigned char* bytes) {
    return bytes[0] == 0xFF && bytes[1] >= 0xE0 && bytes[2] <= 0xEF;
}

} // namespace

CMPAHeader::CMPAHeader(CMPAStream* stream, long long& offset, bool exactOffset, bool reverse,
                       const CMPAHeader* compareHeader) {
    const unsigned int limit = exactOffset ? m_dwTolerance : m_dwMaxRange;
    for (unsigned int n = 1;; ++n) {
        const unsigned char* bytes = stream->ReadBytes(kSize, offset, false, reverse);
        if (IsCandidate(bytes)) {
            auto error = Decode(bytes);
            if (!error && compareHeader != nullptr && !(*this == *compareHeader)) {
                error = CMPAException::IncompatibleHeader;
            }
            if (!error) {
                return;
            }
            if (exactOffset) {
                throw CMPAException(*error, stream->GetFileName(), nullptr, false);
            }
        }
        if (n > limit) {
            throw CMPAException(CMPAException::NoFrameWithinTolerance, stream->GetFileName(),
                                nullptr, false);
        }
        if (exactOffset) {
            // Ever further out to either side in turn: +1, -1, +2, -2, +3, -3 from the start.
            offset += n % 2 == 1 ? static_cast<long long>(n) : -static_cast<long long>(n);
        } else {
            offset += reverse ? -1 : 1;
        }
    }
}

void CMPAHeader::Init(const unsigned char* bytes, const char* fileName) {
    if (const auto error = Decode(bytes)) {
        throw CMPAException(*error, fileName, nullptr, false);
    }
}

bool CMPAHeader::operator==(const CMPAHeader& other) const {
    return m_version == other.m_version && m_layer == other.m_layer &&
           m_samplingRateHz == other.m_samplingRateHz &&
           IsSingleChannel() == other.IsSingleChannel() && m_emphasis == other.m_emphasis;
}

// Tells what is wrong instead of throwing it: a search through data that is full of false
// candidates would spend its time unwinding.
std::optional<CMPAException::ErrorIDs> CMPAHeader::Decode(const unsigned char* bytes) {
    m_version = bytes[1] >> 3 & 0x03U;
    if (m_version == kReservedVersion) {
        return CMPAException::HeaderCorrupt;
    }
    m_isLSF = m_version != kMPEG1;

    m_layer = (bytes[1] >> 1 & 0x03U) ^ 0x03U;
    if (m_layer == kReservedLayer) {
        return CMPAException::HeaderCorrupt;
    }
    m_isCRCProtected = (bytes[1] & 0x01U) == 0;

    const unsigned int bitrateIndex = bytes[2] >> 4;
    if (bitrateIndex == kReservedBitrateIndex) {
        return CMPAException::HeaderCorrupt;
    }
    m_bitrateBps = m_dwBitrates[m_isLSF][m_layer][bitrateIndex] * 1000;
    if (m_bitrateBps == 0) {
        return CMPAException::FreeBitrateNotSupported;
    }

    const unsigned int samplingRateIndex = bytes[2] >> 2 & 0x03U;
    if (samplingRateIndex == kReservedSamplingRateIndex) {
        return CMPAException::HeaderCorrupt;
    }
    m_samplingRateHz = m_dwSamplingRates[m_version][samplingRateIndex];
    m_padding = bytes[2] >> 1 & 0x01U;
    m_samplesPerFrame = m_dwSamplesPerFrames[m_isLSF][m_layer];
    m_isPrivate = (bytes[2] & 0x01U) != 0;

    m_channelMode = bytes[3] >> 6;
    m_modeExtension = bytes[3] >> 4 & 0x03U;
    m_bound = kSubbands;
    m_allocationTable = 0;
    if (m_channelMode == kJointStereo) {
        m_bound = static_cast<unsigned short>(4 * m_modeExtension + 4);
    }
    m_isCopyright = (bytes[3] & 0x08U) != 0;
    m_isOriginal = (bytes[3] & 0x04U) != 0;
    m_emphasis = bytes[3] & 0x03U;
    if (m_emphasis == kReservedEmphasis) {
        return CMPAException::HeaderCorrupt;
    }
    return m_layer == kLayerII ? DecodeAllocationTable(bitrateIndex) : std::nullopt;
}

// ISO/IEC 11172-3, 2.4.2.3 (which bitrates a mode may have) and Annex B, tables B.2a to B.2d.
std::optional<CMPAException::ErrorIDs>
CMPAHeader::DecodeAllocationTable(unsigned int bitrateIndex) {
    if (m_isLSF) {
        m_allocationTable = 4;
        return std::nullopt;
    }
    if (!m_bAllowedModes[bitrateIndex][IsSingleChannel()]) {
        return CMPAException::HeaderCorrupt;
    }
    const unsigned int kbpsPerChannel = m_bitrateBps / 1000 / (IsSingleChannel() ? 1 : 2);
    if (kbpsPerChannel <= 48) {
        m_allocationTable = m_samplingRateHz == 32000 ? 3 : 2;
    } else if (kbpsPerChannel <= 80) {
        m_allocationTable = 0;
    } else {
        m_allocationTable = m_samplingRateHz == 48000 ? 0 : 1;
    }
    return std::nullopt;
}
