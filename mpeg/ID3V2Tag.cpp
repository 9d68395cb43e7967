#include "mpeg/ID3V2Tag.h"

#include "mpeg/StreamReader.h"

namespace {

constexpr unsigned int kVersionOffset = 3;

} // namespace

CTag* CID3V2Tag::FindTag(CMPAStream* stream, bool appended, long long begin, long long end) {
    const long long offset = appended ? end - bitstream::kID3v2HeaderBytes : begin;
    return bitstream::IsID3v2(StreamReader(stream, appended), offset, appended)
               ? new CID3V2Tag(stream, appended, offset)
               : nullptr;
}

CID3V2Tag::CID3V2Tag(CMPAStream* stream, bool appended, long long offset)
    : CTag(stream, "ID3", appended, offset) {
    long long versionOffset = offset + kVersionOffset;
    const unsigned char* version = stream->ReadBytes(2, versionOffset, false, appended);
    SetVersion(2, version[0], version[1]);
    SetSize(bitstream::ID3v2Bytes(StreamReader(stream, appended), offset),
            bitstream::kID3v2HeaderBytes);
}

CID3V2Tag::~CID3V2Tag() = default;

unsigned int CID3V2Tag::GetSynchsafeInteger(unsigned int value) {
    return bitstream::SynchsafeInteger(value);
}
