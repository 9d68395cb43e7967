#pragma once

#include "mpeg/Tag.h"

/// A MusicMatch tag: an optional 256-byte header, image data, metadata of one of a few sizes, a
/// version section of 256 bytes and a footer of 68 bytes; numbers are little-endian.
class CMusicMatchTag : public CTag {
public:
    static CTag* FindTag(CMPAStream* stream, bool appended, long long begin, long long end);

    /// @param offset  of the version text in the footer, 16 bytes before the end of the tag.
    /// Throws CMPAException when the sections cannot be measured or do not fit the file.
    CMusicMatchTag(CMPAStream* stream, long long offset);
    CMusicMatchTag(const CMusicMatchTag&) = delete;
    CMusicMatchTag& operator=(const CMusicMatchTag&) = delete;
    ~CMusicMatchTag() override;
};
