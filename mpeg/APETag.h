#pragma once

#include "mpeg/Tag.h"

/// An APE tag: items between an optional header and a footer of 32 bytes each, which begin with
/// "APETAGEX"; numbers are little-endian.
class CAPETag : public CTag {
public:
    static CTag* FindTag(CMPAStream* stream, bool appended, long long begin, long long end);

    /// @param offset  of the header; of the footer for an appended tag.
    /// Throws CMPAException when the size cannot be that of a tag.
    CAPETag(CMPAStream* stream, bool appended, long long offset);
    CAPETag(const CAPETag&) = delete;
    CAPETag& operator=(const CAPETag&) = delete;
    ~CAPETag() override;
};
