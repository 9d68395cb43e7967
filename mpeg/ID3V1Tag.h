#pragma once

#include "mpeg/Tag.h"

/// An ID3v1 tag: the last 128 bytes of a file, beginning with "TAG".
class CID3V1Tag : public CTag {
public:
    static CTag* FindTag(CMPAStream* stream, bool appended, long long begin, long long end);

    /// @param offset  of "TAG"
    CID3V1Tag(CMPAStream* stream, long long offset);
    CID3V1Tag(const CID3V1Tag&) = delete;
    CID3V1Tag& operator=(const CID3V1Tag&) = delete;
    ~CID3V1Tag() override;
};
