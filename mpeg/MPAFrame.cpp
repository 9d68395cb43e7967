#include "mpeg/MPAFrame.h"

#include "bitstream/FrameFacts.h"
#include "mpeg/MPAEndOfFileException.h"
#include "mpeg/MPAStream.h"
#include "mpeg/VBRHeader.h"

namespace {

constexpr unsigned int kSubbands = 32;
constexpr unsigned int kCRCOffset = CMPAHeader::kSize;
constexpr unsigned int kCRCBits = 16;

unsigned int FrameSizeBytes(const CMPAHeader& header) {
    return bitstream::FrameBytes(header.IsLSF(), header.GetLayer(), header.GetBitrateBps(),
                                 header.GetSamplingRateHz(), header.GetPadding());
}

} // namespace

CMPAFrame::CMPAFrame(CMPAStream* stream, long long offset, bool findSubsequent, bool exactOffset,
                     bool reverse, const CMPAHeader* compareHeader)
    : m_stream(stream), m_offset(offset),
      m_header(stream, m_offset, exactOffset, reverse, compareHeader),
      m_sizeBytes(FrameSizeBytes(m_header)), m_findSubsequent(findSubsequent) {
}

bool CMPAFrame::FileEndsAfterThis() const {
    try {
        long long offset = m_offset + m_sizeBytes;
        const CMPAHeader subsequent(m_stream, offset, true, false, &m_header);
    } catch (const CMPAEndOfFileException&) {
        return true;
    } catch (const CMPAException&) {
        // Garbage or another stream follows: this frame stands all the same.
    }
    return false;
}

CVBRHeader* CMPAFrame::FindVBRHeader() const {
    return CVBRHeader::FindHeader(this);
}

bool CMPAFrame::CheckCRC() const {
    if (!m_header.IsCRCProtected()) {
        return false;
    }
    if (m_header.GetLayer() != 0) {
        return true;
    }
    // Header, CRC, then 4 bits of allocation for each subband and channel: below the bound each
    // channel has its own, above it they share one.
    const unsigned int channels = m_header.IsSingleChannel() ? 1 : 2;
    const unsigned int bound = m_header.GetBound();
    const unsigned int bitCount =
        8 * CMPAHeader::kSize + kCRCBits + 4 * (channels * bound + (kSubbands - bound));

    long long offset = m_offset;
    const unsigned short computed =
        CalcCRC16(m_stream->ReadBytes((bitCount + 7) / 8, offset, false, false), bitCount);
    offset += kCRCOffset;
    return m_stream->ReadBEValue(kCRCBits / 8, offset, false) == computed;
}

unsigned short CMPAFrame::CalcCRC16(const unsigned char* buffer, unsigned int bitCount) {
    constexpr unsigned int kPolynomial = 0x8005;
    constexpr unsigned int kFirstBit = 16;
    constexpr unsigned int kCRCBegin = 8 * kCRCOffset;
    constexpr unsigned int kCRCEnd = kCRCBegin + kCRCBits;

    unsigned int crc = 0xFFFF;
    for (unsigned int bit = kFirstBit; bit < bitCount; ++bit) {
        if (bit >= kCRCBegin && bit < kCRCEnd) {
            continue;
        }
        const unsigned int byte = buffer[bit / 8];
        const unsigned int input = byte >> (7 - bit % 8) & 1U;
        const unsigned int shiftedOut = crc >> 15 & 1U;
        crc = crc << 1 & 0xFFFFU;
        if (shiftedOut != input) {
            crc ^= kPolynomial;
        }
    }
    return static_cast<unsigned short>(crc);
}
