#include "mpeg/MPAHeader.h"

#include "bitstream/FrameFacts.h"
#include "mpeg/MPAStream.h"

namespace {

constexpr unsigned short kSubbands = 32;

// Eleven sync bits, and a third byte whose bitrate index is not the reserved one: cheap enough to
// ask at every byte of a search.
bool IsCandidate(const unsigned char* bytes) {
    return bytes[0] == 0xFF && bytes[1] >= 0xE0 && bytes[2] <= 0xEF;
}

} // namespace

const unsigned int CMPAHeader::m_dwTolerance = 2 * bitstream::kNearBytes;
const unsigned int CMPAHeader::m_dwMaxRange = bitstream::kSearchBytes;

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
    bitstream::FrameFacts facts;
    switch (bitstream::DecodeHeader(bytes, facts)) {
    case bitstream::HeaderState::Sound:
        break;
    case bitstream::HeaderState::Corrupt:
        return CMPAException::HeaderCorrupt;
    case bitstream::HeaderState::FreeFormat:
        return CMPAException::FreeBitrateNotSupported;
    }
    m_isLSF = facts.isLSF;
    m_version = facts.version;
    m_layer = facts.layer;
    m_isCRCProtected = facts.isCRCProtected;
    m_bitrateBps = facts.bitrateBps;
    m_samplingRateHz = facts.samplingRateHz;
    m_padding = facts.padding;
    m_samplesPerFrame = facts.SamplesPerFrame();
    m_isPrivate = (bytes[2] & 0x01U) != 0;
    m_channelMode = facts.channelMode;
    m_modeExtension = bytes[3] >> 4 & 0x03U;
    m_bound = m_channelMode == kJointStereo ? static_cast<unsigned short>(4 * m_modeExtension + 4)
                                            : kSubbands;
    m_isCopyright = (bytes[3] & 0x08U) != 0;
    m_isOriginal = (bytes[3] & 0x04U) != 0;
    m_emphasis = facts.emphasis;
    m_allocationTable = m_layer == bitstream::kLayerII ? AllocationTable() : 0;
    return std::nullopt;
}

// ISO/IEC 11172-3, Annex B, tables B.2a to B.2d.
unsigned short CMPAHeader::AllocationTable() const {
    if (m_isLSF) {
        return 4;
    }
    const unsigned int kbpsPerChannel = m_bitrateBps / 1000 / (IsSingleChannel() ? 1 : 2);
    if (kbpsPerChannel <= 48) {
        return m_samplingRateHz == 32000 ? 3 : 2;
    }
    return kbpsPerChannel <= 80 || m_samplingRateHz == 48000 ? 0 : 1;
}
