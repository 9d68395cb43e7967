#include "mpeg/XINGHeader.h"

#include "mpeg/LameTag.h"
#include "mpeg/MPAFrame.h"
#include "mpeg/MPAStream.h"

#include <algorithm>

CXINGHeader* CXINGHeader::FindHeader(const CMPAFrame* frame) {
    const CMPAHeader& header = *frame->GetHeader();
    const long long offset =
        frame->GetOffset() + CMPAHeader::kSize +
        CMPAHeader::m_dwSideInfoSizes[header.IsLSF()][header.IsSingleChannel()];
    CMPAStream* stream = frame->GetStream();
    if (CheckID(stream, offset, 'X', 'i', 'n', 'g') ||
        CheckID(stream, offset, 'I', 'n', 'f', 'o')) {
        return new CXINGHeader(frame, offset);
    }
    return nullptr;
}

CXINGHeader::CXINGHeader(const CMPAFrame* frame, long long offset)
    : CVBRHeader(frame->GetStream(), offset) {
    const unsigned int flags = ReadFlags();
    offset += kIDSize + static_cast<long long>(sizeof flags);
    if ((flags & kFrameCount) != 0) {
        m_frameCount = ReadValue(4, offset);
    }
    if ((flags & kByteCount) != 0) {
        m_byteCount = ReadValue(4, offset);
    }
    if ((flags & kSeekTable) != 0) {
        ReadTables(kTableEntries, 1, offset);
    }
    if ((flags & kQuality) != 0) {
        m_quality = ReadValue(4, offset);
    }
    m_lameTag.reset(CLAMETag::FindTag(m_stream, true, m_offset, 0));
}

CXINGHeader::~CXINGHeader() = default;

unsigned int CXINGHeader::ReadFlags() const {
    long long offset = m_offset + kIDSize;
    return m_stream->ReadBEValue(4, offset, false);
}

unsigned int CXINGHeader::SeekPosition(float& percent) const {
    if (m_seekTable == nullptr) {
        return 0;
    }
    const unsigned int index = std::min(static_cast<unsigned int>(percent), kTableEntries - 1);
    const auto from = static_cast<float>(m_seekTable[index]);
    const float to =
        index + 1 < kTableEntries ? static_cast<float>(m_seekTable[index + 1]) : 256.0F;
    const float position = from + (percent - static_cast<float>(index)) * (to - from);
    return Truncated(static_cast<float>(m_byteCount) * position / 256.0F);
}
