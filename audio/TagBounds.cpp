#include "audio/TagBounds.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace {

// No file has more than a handful; one that consists of tiny tags throughout is hostile.
constexpr int kMostTags = 4096;

constexpr std::int64_t kId3v1Bytes = 128;
constexpr std::int64_t kId3v2HeaderBytes = 10; // the footer's too
constexpr std::int64_t kApeFooterBytes = 32;   // the header's too

/// The bytes as text; empty where the file does not hold all of them.
std::string_view Text(FileWindow& window, std::int64_t offset, std::int64_t count) {
    const auto size = static_cast<std::size_t>(count);
    const std::uint8_t* bytes = window.Bytes(offset, size);
    return bytes != nullptr ? std::string_view(reinterpret_cast<const char*>(bytes), size)
                            : std::string_view();
}

bool HasText(FileWindow& window, std::int64_t offset, std::string_view text) {
    return Text(window, offset, static_cast<std::int64_t>(text.size())) == text;
}

std::int64_t LittleEndian(const std::uint8_t* bytes) {
    return bytes[0] | bytes[1] << 8 | bytes[2] << 16 | std::int64_t{bytes[3]} << 24;
}

// Each of the following gives the size of one kind of tag, 0 for none.

/// @param offset  of the header or the footer, which hold the same fields
std::int64_t Id3v2Bytes(FileWindow& window, std::int64_t offset, const char* identifier) {
    const std::uint8_t* bytes = window.Bytes(offset, kId3v2HeaderBytes);
    if (bytes == nullptr || std::memcmp(bytes, identifier, 3) != 0) {
        return 0;
    }
    const std::int64_t body = (bytes[6] & 0x7F) << 21 | (bytes[7] & 0x7F) << 14 |
                              (bytes[8] & 0x7F) << 7 | (bytes[9] & 0x7F);
    const bool footer = (bytes[5] & 0x10) != 0;
    return body + (footer ? 2 * kId3v2HeaderBytes : kId3v2HeaderBytes);
}

/// @param offset  of the header or the footer, which hold the same fields
std::int64_t ApeBytes(FileWindow& window, std::int64_t offset) {
    constexpr std::int64_t kFirstVersionWithHeader = 1001;
    const std::uint8_t* bytes = window.Bytes(offset, kApeFooterBytes);
    if (bytes == nullptr || std::memcmp(bytes, "APETAGEX", 8) != 0) {
        return 0;
    }
    const bool header =
        (bytes[23] & 0x80) != 0 && LittleEndian(bytes + 8) >= kFirstVersionWithHeader;
    return LittleEndian(bytes + 12) + (header ? kApeFooterBytes : 0);
}

std::int64_t TrailingId3v1Bytes(FileWindow& window, std::int64_t end) {
    return HasText(window, end - kId3v1Bytes, "TAG") ? kId3v1Bytes : 0;
}

std::int64_t TrailingId3v2Bytes(FileWindow& window, std::int64_t end) {
    return Id3v2Bytes(window, end - kId3v2HeaderBytes, "3DI");
}

std::int64_t TrailingApeBytes(FileWindow& window, std::int64_t end) {
    const std::int64_t bytes = ApeBytes(window, end - kApeFooterBytes);
    return bytes >= kApeFooterBytes ? bytes : 0;
}

/// Version 2 states its size in six digits, version 1 has to be searched for its beginning.
std::int64_t TrailingLyrics3Bytes(FileWindow& window, std::int64_t end) {
    constexpr std::int64_t kMarkerBytes = 9;
    constexpr std::int64_t kDigits = 6;
    constexpr std::int64_t kLongestVersion1 = 5100; // before the closing marker
    const std::int64_t marker = end - kMarkerBytes;
    if (HasText(window, marker, "LYRICS200")) {
        const std::string digits(Text(window, marker - kDigits, kDigits));
        const long size = std::strtol(digits.c_str(), nullptr, 10);
        return size < 0 ? 0 : size + kDigits + kMarkerBytes;
    }
    if (!HasText(window, marker, "LYRICSEND")) {
        return 0;
    }
    const std::int64_t from = std::max(std::int64_t{0}, marker - kLongestVersion1);
    const std::size_t found = Text(window, from, marker - from).rfind("LYRICSBEGIN");
    return found == std::string_view::npos ? 0 : end - from - static_cast<std::int64_t>(found);
}

bool HasMusicMatchSection(FileWindow& window, std::int64_t offset) {
    return HasText(window, offset, "18273645");
}

/// From its end backwards: a footer, a version section, metadata of one of a few sizes, an image,
/// and a header that may be missing.
std::int64_t TrailingMusicMatchBytes(FileWindow& window, std::int64_t end) {
    constexpr std::int64_t kFooterBytes = 68; // begins with where the image and the version begin
    constexpr std::int64_t kSectionBytes = 256;
    constexpr std::int64_t kMetadataBytesOfVersion3 = 7868; // and of all before it
    constexpr std::int64_t kMetadataBytes[] = {7936, 8004, 8132};
    if (!HasText(window, end - 48, "Brava Software Inc.             ")) {
        return 0;
    }
    const std::string_view versionText = Text(window, end - 16, 4);
    double version = 0.0;
    std::from_chars(versionText.data(), versionText.data() + versionText.size(), version);
    std::int64_t metadata = kMetadataBytesOfVersion3;
    if (version > 3.0) {
        const auto* found = std::find_if(
            std::begin(kMetadataBytes), std::end(kMetadataBytes), [&](std::int64_t bytes) {
                return HasMusicMatchSection(window, end - kFooterBytes - kSectionBytes - bytes);
            });
        if (found == std::end(kMetadataBytes)) {
            return 0;
        }
        metadata = *found;
    }
    const std::uint8_t* footer = window.Bytes(end - kFooterBytes, kFooterBytes);
    if (footer == nullptr) {
        return 0;
    }
    const std::int64_t image = LittleEndian(footer + 12) - LittleEndian(footer);
    if (image < 0) {
        return 0;
    }
    const std::int64_t size = image + metadata + kSectionBytes + kFooterBytes;
    const bool header = HasMusicMatchSection(window, end - size - kSectionBytes);
    return size + (header ? kSectionBytes : 0);
}

std::int64_t TrailingTagBytes(FileWindow& window, std::int64_t end) {
    // In the parser's order: some bytes could be taken for two kinds.
    for (const auto measure : {TrailingId3v1Bytes, TrailingMusicMatchBytes, TrailingId3v2Bytes,
                               TrailingLyrics3Bytes, TrailingApeBytes}) {
        if (const std::int64_t bytes = measure(window, end); bytes != 0) {
            return bytes;
        }
    }
    return 0;
}

std::int64_t LeadingTagBytes(FileWindow& window, std::int64_t begin) {
    const std::int64_t id3v2 = Id3v2Bytes(window, begin, "ID3");
    return id3v2 != 0 ? id3v2 : ApeBytes(window, begin);
}

} // namespace

TagBounds FindTagBounds(FileWindow& window) {
    TagBounds bounds{0, window.Source().State().sizeBytes};
    for (int tags = 0; tags < kMostTags; ++tags) {
        const std::int64_t bytes = TrailingTagBytes(window, bounds.endBytes);
        if (bytes == 0 || bytes > bounds.endBytes) {
            break;
        }
        bounds.endBytes -= bytes;
    }
    for (int tags = 0; tags < kMostTags; ++tags) {
        const std::int64_t bytes = LeadingTagBytes(window, bounds.beginBytes);
        if (bytes == 0) {
            break;
        }
        bounds.beginBytes += bytes;
    }
    return bounds;
}
