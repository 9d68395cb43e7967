#include "mpeg/APETag.h"

#include "mpeg/StreamReader.h"

CTag* CAPETag::FindTag(CMPAStream* stream, bool appended, long long begin, long long end) {
    const long long offset = appended ? end - bitstream::kAPEFooterBytes : begin;
    return bitstream::IsAPE(StreamReader(stream, appended), offset)
               ? new CAPETag(stream, appended, offset)
               : nullptr;
}

CAPETag::CAPETag(CMPAStream* stream, bool appended, long long offset)
    : CTag(stream, "APE", appended, offset) {
    const auto read = StreamReader(stream, appended);
    m_version = bitstream::APEVersion(read, offset);
    SetSize(bitstream::APEBytes(read, offset, appended), bitstream::kAPEFooterBytes);
}

CAPETag::~CAPETag() = default;
