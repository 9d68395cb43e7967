#include "mpeg/Lyrics3Tag.h"

#include "mpeg/MPAException.h"
#include "mpeg/StreamReader.h"

CTag* CLyrics3Tag::FindTag(CMPAStream* stream, bool appended, long long /*begin*/, long long end) {
    if (!appended) {
        return nullptr;
    }
    const long long offset = end - bitstream::kLyrics3MarkerBytes;
    const int version = bitstream::Lyrics3Version(StreamReader(stream, true), offset);
    return version == 0 ? nullptr : new CLyrics3Tag(stream, offset, version == 2);
}

CLyrics3Tag::CLyrics3Tag(CMPAStream* stream, long long offset, bool isVersion2)
    : CTag(stream, "Lyrics3", true, offset) {
    SetVersion(isVersion2 ? 2 : 1, 0, 0);
    const auto bytes = bitstream::Lyrics3Bytes(StreamReader(stream, true), offset, isVersion2);
    if (!bytes) {
        throw CMPAException(CMPAException::CorruptLyrics3Tag, nullptr, nullptr, false);
    }
    SetSize(bytes, bitstream::kLyrics3MarkerBytes);
}

CLyrics3Tag::~CLyrics3Tag() = default;
