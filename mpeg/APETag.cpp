#include "mpeg/APETag.h"

#include "mpeg/MPAEndOfFileException.h"
#include "mpeg/MPAStream.h"

#include <limits>

namespace {

constexpr unsigned int kFooterSize = 32; // the header's too
constexpr unsigned int kVersionOffset = 8;
constexpr unsigned int kItemCountSize = 4;
constexpr unsigned int kHasHeaderFlag = 1U << 31;

} // namespace

CTag* CAPETag::FindTag(CMPAStream* stream, bool appended, long long begin, long long end) {
    const long long offset = appended ? end - kFooterSize : begin;
    return HasText(stream, offset, "APETAGEX", appended) ? new CAPETag(stream, appended, offset)
                                                         : nullptr;
}

CAPETag::CAPETag(CMPAStream* stream, bool appended, long long offset)
    : CTag(stream, "APE", appended, offset) {
    long long fieldOffset = offset + kVersionOffset;
    m_version = static_cast<float>(stream->ReadLEValue(4, fieldOffset, true)) / 1000.0F;
    unsigned long long size = stream->ReadLEValue(4, fieldOffset, true); // without a header
    fieldOffset += kItemCountSize;
    const unsigned int flags = stream->ReadLEValue(4, fieldOffset, false);
    if ((flags & kHasHeaderFlag) != 0 && m_version > 1.0F) {
        size += kFooterSize;
    }
    // A size that wraps, or that does not even cover the footer, would put the tag behind itself.
    if (size > std::numeric_limits<unsigned int>::max() || (appended && size < kFooterSize)) {
        throw CMPAEndOfFileException(stream->GetFileName());
    }
    m_size = static_cast<unsigned int>(size);
    if (appended) {
        m_offset = offset - (m_size - kFooterSize);
    }
}

CAPETag::~CAPETag() = default;
