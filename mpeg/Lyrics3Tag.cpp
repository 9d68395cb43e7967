#include "mpeg/Lyrics3Tag.h"

#include "mpeg/MPAException.h"
#include "mpeg/MPAStream.h"

#include <algorithm>
#include <cstdlib>

namespace {

constexpr unsigned int kMarkerSize = 9; // "LYRICSEND" and "LYRICS200"
constexpr unsigned int kSizeDigits = 6;
constexpr long long kLongestVersion1 = 5100; // bytes before the closing marker

} // namespace

CTag* CLyrics3Tag::FindTag(CMPAStream* stream, bool appended, long long /*begin*/, long long end) {
    if (!appended) {
        return nullptr;
    }
    const long long offset = end - kMarkerSize;
    if (HasText(stream, offset, "LYRICS200", true)) {
        return ReadStoredSize(stream, offset) < 0 ? nullptr : new CLyrics3Tag(stream, offset, true);
    }
    return HasText(stream, offset, "LYRICSEND", true) ? new CLyrics3Tag(stream, offset, false)
                                                      : nullptr;
}

CLyrics3Tag::CLyrics3Tag(CMPAStream* stream, long long offset, bool isVersion2)
    : CTag(stream, "Lyrics3", true, offset) {
    if (isVersion2) {
        SetVersion(2, 0, 0);
        m_offset = offset - kSizeDigits - ReadStoredSize(stream, offset);
    } else {
        SetVersion(1, 0, 0);
        m_offset = FindBegin(stream, offset);
    }
    m_size = static_cast<unsigned int>(offset + kMarkerSize - m_offset);
}

CLyrics3Tag::~CLyrics3Tag() = default;

// The bytes from the begin up to the size field. A damaged field may read as negative.
long CLyrics3Tag::ReadStoredSize(CMPAStream* stream, long long markerOffset) {
    const std::string digits = ReadText(stream, markerOffset - kSizeDigits, kSizeDigits, true);
    return std::strtol(digits.c_str(), nullptr, 10);
}

long long CLyrics3Tag::FindBegin(CMPAStream* stream, long long markerOffset) {
    const long long searchBegin = std::max(0LL, markerOffset - kLongestVersion1);
    const std::string text =
        ReadText(stream, searchBegin, static_cast<unsigned int>(markerOffset - searchBegin), true);
    const std::size_t found = text.rfind("LYRICSBEGIN");
    if (found == std::string::npos) {
        throw CMPAException(CMPAException::CorruptLyrics3Tag, nullptr, nullptr, false);
    }
    return searchBegin + static_cast<long long>(found);
}
