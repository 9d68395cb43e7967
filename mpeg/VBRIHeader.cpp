#include "mpeg/VBRIHeader.h"

#include "bitstream/FrameFacts.h"
#include "mpeg/MPAFrame.h"
#include "mpeg/MPAStream.h"

#include <algorithm>
#include <cmath>

CVBRIHeader* CVBRIHeader::FindHeader(const CMPAFrame* frame) {
    const long long offset = frame->GetOffset() + bitstream::kVBRIOffset;
    if (CheckID(frame->GetStream(), offset, 'V', 'B', 'R', 'I')) {
        return new CVBRIHeader(frame, offset);
    }
    return nullptr;
}

CVBRIHeader::CVBRIHeader(const CMPAFrame* frame, long long offset)
    : CVBRHeader(frame->GetStream(), offset) {
    offset += kIDSize;
    m_version = ReadValue(2, offset);
    m_delay = static_cast<float>(ReadValue(2, offset));
    m_quality = ReadValue(2, offset);
    m_byteCount = ReadValue(4, offset);
    m_frameCount = ReadValue(4, offset);
    const unsigned int entries = ReadValue(2, offset) + 1; // one more than the number stored
    m_scale = ReadValue(2, offset);
    m_entrySize = ReadValue(2, offset);
    m_framesPerEntry = ReadValue(2, offset);
    if (m_entrySize <= sizeof(unsigned int)) { // no wider entry means anything
        ReadTables(entries, m_entrySize, offset);
    }
    const CMPAHeader& header = *frame->GetHeader();
    m_playingTime = header.GetSamplesPerFrame() * m_frameCount / header.GetSamplingRateHz();
}

CVBRIHeader::~CVBRIHeader() = default;

unsigned int CVBRIHeader::SeekPosition(float& percent) const {
    return SeekPositionByTime(static_cast<float>(m_playingTime) * percent / 100.0F * 1000.0F);
}

unsigned int CVBRIHeader::SeekPositionByTime(float milliseconds) const {
    if (m_seekTable == nullptr || m_framesPerEntry == 0 || m_playingTime == 0) {
        return 0;
    }
    const float total = static_cast<float>(m_playingTime) * 1000.0F;
    const float perEntry = total / static_cast<float>(m_tableSize);
    const float target = std::clamp(milliseconds, 0.0F, total);

    // The first entry that ends after the time asked for, and all that lies before its end.
    unsigned int entry = 0;
    unsigned int position = 0;
    float accumulated = 0.0F;
    unsigned int next = 0;
    do {
        entry = m_seekTable[next++];
        position += entry;
        accumulated += perEntry;
    } while (target >= accumulated && next < m_tableSize);

    // Back from there, by whole frames, to the time itself.
    const auto frames = static_cast<float>(m_framesPerEntry);
    const float fraction = (accumulated - target) / perEntry;
    const float framesBack = std::trunc((1.0F / (2.0F * frames) + fraction) * frames);
    return position - Truncated(framesBack * static_cast<float>(entry) / frames);
}
