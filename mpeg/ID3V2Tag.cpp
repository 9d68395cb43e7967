#include "mpeg/ID3V2Tag.h"

#include "mpeg/MPAStream.h"

namespace {

constexpr unsigned int kHeaderSize = 10; // the footer's too
constexpr unsigned int kVersionOffset = 3;
constexpr unsigned int kSizeOffset = 6;
constexpr unsigned char kFooterFlag = 0x10;

} // namespace

CTag* CID3V2Tag::FindTag(CMPAStream* stream, bool appended, long long begin, long long end) {
    long long offset = appended ? end - kHeaderSize : begin;
    // The whole header has to be there before its first bytes count.
    stream->ReadBytes(kHeaderSize, offset, false, appended);
    return HasText(stream, offset, appended ? "3DI" : "ID3", appended)
               ? new CID3V2Tag(stream, appended, offset)
               : nullptr;
}

CID3V2Tag::CID3V2Tag(CMPAStream* stream, bool appended, long long offset)
    : CTag(stream, "ID3", appended, offset) {
    long long fieldOffset = offset + kVersionOffset;
    const unsigned char* fields =
        stream->ReadBytes(kSizeOffset - kVersionOffset, fieldOffset, true, false);
    SetVersion(2, fields[0], fields[1]);
    const bool hasFooter = (fields[2] & kFooterFlag) != 0;

    m_size = GetSynchsafeInteger(stream->ReadBEValue(4, fieldOffset, false)) +
             (hasFooter ? 2 * kHeaderSize : kHeaderSize);
    if (appended) {
        m_offset = offset - (m_size - kHeaderSize);
    }
}

CID3V2Tag::~CID3V2Tag() = default;

unsigned int CID3V2Tag::GetSynchsafeInteger(unsigned int value) {
    unsigned int result = 0;
    for (int shift = 24; shift >= 0; shift -= 8) {
        result = result << 7 | (value >> shift & 0x7FU);
    }
    return result;
}
