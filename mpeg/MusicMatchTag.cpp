#include "mpeg/MusicMatchTag.h"

#include "mpeg/StreamReader.h"

CTag* CMusicMatchTag::FindTag(CMPAStream* stream, bool appended, long long /*begin*/,
                              long long end) {
    const long long offset = end - bitstream::kMusicMatchVersionBytes;
    return appended && bitstream::IsMusicMatch(StreamReader(stream, true), offset)
               ? new CMusicMatchTag(stream, offset)
               : nullptr;
}

CMusicMatchTag::CMusicMatchTag(CMPAStream* stream, long long offset)
    : CTag(stream, "MM", true, offset) {
    const auto read = StreamReader(stream, true);
    m_version = bitstream::MusicMatchVersion(read, offset);
    SetSize(bitstream::MusicMatchBytes(read, offset), bitstream::kMusicMatchVersionBytes);
}

CMusicMatchTag::~CMusicMatchTag() = default;
