#include "mpeg/Tags.h"

#include "bitstream/TagSizes.h"
#include "mpeg/APETag.h"
#include "mpeg/ID3V1Tag.h"
#include "mpeg/ID3V2Tag.h"
#include "mpeg/Lyrics3Tag.h"
#include "mpeg/MPAEndOfFileException.h"
#include "mpeg/MPAStream.h"
#include "mpeg/MusicMatchTag.h"

#include <algorithm>

const std::array<CTags::Finder, 5> CTags::m_appendedTagFactories = {
    CID3V1Tag::FindTag,   CMusicMatchTag::FindTag, CID3V2Tag::FindTag,
    CLyrics3Tag::FindTag, CAPETag::FindTag,
};

const std::array<CTags::Finder, 2> CTags::m_prependedTagFactories = {
    CID3V2Tag::FindTag,
    CAPETag::FindTag,
};

// After each tag found, all kinds are tried again: the tag was no part of the audio, and any kind
// may stand next to it.
CTags::CTags(CMPAStream* stream) : m_endOffset(stream->GetSize()) {
    while (FindAppendedTag(stream)) {
    }
    while (FindPrependedTag(stream)) {
    }
}

CTags::~CTags() = default;

CTag* CTags::GetNextTag(unsigned int& index) const {
    const unsigned int current = index++;
    return current < m_tags.size() ? m_tags[current].get() : nullptr;
}

bool CTags::FindTag(Finder finder, CMPAStream* stream, bool appended) {
    std::unique_ptr<CTag> tag(finder(stream, appended, m_beginOffset, m_endOffset));
    if (tag == nullptr || (!appended && tag->GetSize() == 0)) {
        return false; // a leading tag without length would be found for ever
    }
    const bool isInside = appended ? tag->GetOffset() >= 0 && tag->GetOffset() < m_endOffset
                                   : tag->GetEnd() <= stream->GetSize();
    if (!isInside) {
        throw CMPAEndOfFileException(stream->GetFileName());
    }
    if (m_tags.size() == bitstream::kMostTags) {
        throw CMPAException(CMPAException::NoFrameWithinTolerance, stream->GetFileName(), nullptr,
                            false);
    }
    if (appended) {
        m_endOffset = tag->GetOffset();
    } else {
        m_beginOffset = tag->GetEnd();
    }
    m_tags.push_back(std::move(tag));
    return true;
}

bool CTags::FindAppendedTag(CMPAStream* stream) {
    return std::any_of(m_appendedTagFactories.begin(), m_appendedTagFactories.end(),
                       [&](Finder finder) { return FindTag(finder, stream, true); });
}

bool CTags::FindPrependedTag(CMPAStream* stream) {
    return std::any_of(m_prependedTagFactories.begin(), m_prependedTagFactories.end(),
                       [&](Finder finder) { return FindTag(finder, stream, false); });
}
