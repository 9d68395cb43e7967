#include "mpeg/LameTag.h"

#include "mpeg/StreamReader.h"

#include <iterator>

namespace {

constexpr unsigned int kOffsetInHeader = 120;
constexpr unsigned int kEncoderSize = 9;
constexpr unsigned int kSimpleTagSize = 20;
constexpr unsigned int kVersionOffset = 4; // after "LAME"
constexpr unsigned int kVersionSize = 4;
constexpr unsigned int kSkippedSize = 9; // peak, replay gains, encoding flags
constexpr float kFirstFullVersion = 3.9F;

enum VBRMethod : unsigned char {
    kCBR = 1,
    kABR = 2,
    kVBR1 = 3,
    kVBR4 = 6,
    kCBR2Pass = 8,
    kABR2Pass = 9,
};

} // namespace

const char* const CLAMETag::m_szVBRInfo[10] = {
    "Unknown", "CBR", "ABR", "VBR1", "VBR2", "VBR3", "VBR4", "Reserved", "CBR2Pass", "ABR2Pass"};

CLAMETag* CLAMETag::FindTag(CMPAStream* stream, bool appended, long long begin, long long /*end*/) {
    const long long offset = begin + kOffsetInHeader;
    return StreamReader(stream, false)(offset, kEncoderSize).starts_with("LAME")
               ? new CLAMETag(stream, appended, offset)
               : nullptr;
}

CLAMETag::CLAMETag(CMPAStream* stream, bool appended, long long offset)
    : CTag(stream, "LAME", appended, offset),
      m_encoder(StreamReader(stream, false)(offset, kSimpleTagSize)) {
    m_version = bitstream::ParseDecimal(m_encoder.substr(kVersionOffset, kVersionSize));
    m_isSimpleTag = m_version < kFirstFullVersion;
    if (m_isSimpleTag) {
        return;
    }
    m_encoder.resize(m_encoder[kEncoderSize - 1] == '.' ? kEncoderSize - 1 : kEncoderSize);

    offset += kEncoderSize;
    const unsigned int revisionAndMethod = stream->ReadBEValue(1, offset, true);
    m_revision = static_cast<unsigned char>(revisionAndMethod & 0xF0U);
    m_vbrMethod = static_cast<unsigned char>(revisionAndMethod & 0x0FU);
    m_lowpassHz = stream->ReadBEValue(1, offset, true) * 100;
    offset += kSkippedSize;
    m_bitrateKbps = static_cast<unsigned char>(stream->ReadBEValue(1, offset, false));
}

CLAMETag::~CLAMETag() = default;

bool CLAMETag::IsVBR() const {
    return m_vbrMethod >= kVBR1 && m_vbrMethod <= kVBR4;
}

bool CLAMETag::IsABR() const {
    return m_vbrMethod == kABR || m_vbrMethod == kABR2Pass;
}

bool CLAMETag::IsCBR() const {
    return m_vbrMethod == kCBR || m_vbrMethod == kCBR2Pass;
}

const char* CLAMETag::GetVBRInfo() const {
    return m_vbrMethod < std::size(m_szVBRInfo) ? m_szVBRInfo[m_vbrMethod] : m_szVBRInfo[0];
}
