#include "mpeg/ID3V1Tag.h"

#include "mpeg/StreamReader.h"

namespace {

constexpr unsigned int kTrackOffset = 125; // version 1.1: a zero byte, then the track's number

} // namespace

CTag* CID3V1Tag::FindTag(CMPAStream* stream, bool appended, long long /*begin*/, long long end) {
    if (!appended) {
        return nullptr;
    }
    const long long offset = end - bitstream::kID3v1Bytes;
    return bitstream::IsID3v1(StreamReader(stream, true), offset) ? new CID3V1Tag(stream, offset)
                                                                  : nullptr;
}

CID3V1Tag::CID3V1Tag(CMPAStream* stream, long long offset)
    : CTag(stream, "ID3", true, offset, bitstream::kID3v1Bytes) {
    long long trackOffset = offset + kTrackOffset;
    const unsigned char* track = stream->ReadBytes(2, trackOffset, false, true);
    SetVersion(1, track[0] == 0 && track[1] != 0 ? 1 : 0, 0);
}

CID3V1Tag::~CID3V1Tag() = default;
