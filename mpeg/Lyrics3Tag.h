#pragma once

#include "mpeg/Tag.h"

/// A Lyrics3 tag, from "LYRICSBEGIN" to the closing marker: "LYRICSEND" in version 1, six digits of
/// size and "LYRICS200" in version 2.
class CLyrics3Tag : public CTag {
public:
    static CTag* FindTag(CMPAStream* stream, bool appended, long long begin, long long end);

    /// @param offset  of the closing marker.
    /// Throws CMPAException: CorruptLyrics3Tag for a version 1 tag without a begin.
    CLyrics3Tag(CMPAStream* stream, long long offset, bool isVersion2);
    CLyrics3Tag(const CLyrics3Tag&) = delete;
    CLyrics3Tag& operator=(const CLyrics3Tag&) = delete;
    ~CLyrics3Tag() override;
};
