#include "mpeg/VBRHeader.h"

#include "mpeg/MPAEndOfFileException.h"
#include "mpeg/MPAStream.h"
#include "mpeg/VBRIHeader.h"
#include "mpeg/XINGHeader.h"

#include <algorithm>
#include <limits>

CVBRHeader* CVBRHeader::FindHeader(const CMPAFrame* frame) {
    if (CVBRHeader* header = CXINGHeader::FindHeader(frame)) {
        return header;
    }
    return CVBRIHeader::FindHeader(frame);
}

bool CVBRHeader::CheckID(CMPAStream* stream, long long offset, char c0, char c1, char c2, char c3) {
    const char id[kIDSize] = {c0, c1, c2, c3};
    return std::equal(id, id + kIDSize, stream->ReadBytes(kIDSize, offset, false, false));
}

CVBRHeader::CVBRHeader(CMPAStream* stream, long long offset) : m_stream(stream), m_offset(offset) {
}

CVBRHeader::~CVBRHeader() = default;

bool CVBRHeader::SeekPosition(float& percent, unsigned int& seekPoint) const {
    if (m_seekTable == nullptr || m_byteCount == 0) {
        return false;
    }
    percent = std::clamp(percent, 0.0F, 99.0F);
    seekPoint = SeekPosition(percent);
    return true;
}

unsigned int CVBRHeader::ReadValue(unsigned int bytes, long long& offset) const {
    return m_stream->ReadBEValue(bytes, offset, true);
}

void CVBRHeader::ReadTables(unsigned int entries, unsigned int bytesPerEntry, long long& offset) {
    const long long tableBytes = static_cast<long long>(entries) * bytesPerEntry;
    if (tableBytes > m_stream->GetSize() - offset) {
        throw CMPAEndOfFileException(m_stream->GetFileName());
    }
    m_tableSize = entries;
    m_seekTable = std::make_unique<unsigned int[]>(entries);
    m_rewriteTable = std::make_unique<unsigned int[]>(entries);
    std::generate_n(m_seekTable.get(), entries, [&] { return ReadValue(bytesPerEntry, offset); });
}

unsigned int CVBRHeader::Truncated(float bytes) {
    constexpr unsigned int kMost = std::numeric_limits<unsigned int>::max();
    constexpr float kTooMuch = 4294967296.0F;
    return bytes >= kTooMuch ? kMost : static_cast<unsigned int>(std::max(0.0F, bytes));
}
