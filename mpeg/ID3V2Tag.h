#pragma once

#include "mpeg/Tag.h"

/// An ID3v2 tag: a 10-byte header "ID3" at its start and, where a flag says so, a footer "3DI" of
/// the same form at its end. Both hold version, revision, flags and a synchsafe size.
class CID3V2Tag : public CTag {
public:
    static CTag* FindTag(CMPAStream* stream, bool appended, long long begin, long long end);

    /// @param offset  of the header; of the footer for an appended tag
    CID3V2Tag(CMPAStream* stream, bool appended, long long offset);
    CID3V2Tag(const CID3V2Tag&) = delete;
    CID3V2Tag& operator=(const CID3V2Tag&) = delete;
    ~CID3V2Tag() override;

    /// The value of four bytes that hold seven bits each, the highest first (ID3v2.4.0, 6.2).
    static unsigned int GetSynchsafeInteger(unsigned int value);
};
