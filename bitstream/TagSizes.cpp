#include "bitstream/TagSizes.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <string>

namespace bitstream {

namespace {

bool HasText(const TagReader& read, long long offset, std::string_view text) {
    return read(offset, static_cast<unsigned int>(text.size())) == text;
}

unsigned int Byte(std::string_view bytes, std::size_t offset) {
    return static_cast<unsigned char>(bytes[offset]);
}

unsigned int LittleEndian(std::string_view bytes, std::size_t offset) {
    return Byte(bytes, offset) | Byte(bytes, offset + 1) << 8 | Byte(bytes, offset + 2) << 16 |
           Byte(bytes, offset + 3) << 24;
}

// Of an APE tag's header and footer.
constexpr unsigned int kAPEVersionOffset = 8;
constexpr unsigned int kAPESizeOffset = 12;
constexpr unsigned int kAPEFlagsOffset = 20;

float APEVersion(std::string_view footer) {
    return static_cast<float>(LittleEndian(footer, kAPEVersionOffset)) / 1000.0F;
}

// Lyrics3 version 2 states its size in digits before the closing marker.
constexpr unsigned int kLyrics3Digits = 6;

/// The bytes from the begin up to the digits. A damaged field may read as negative.
long StoredLyrics3Size(const TagReader& read, long long markerOffset) {
    const std::string digits(read(markerOffset - kLyrics3Digits, kLyrics3Digits));
    return std::strtol(digits.c_str(), nullptr, 10);
}

// Of a MusicMatch tag, from its end backwards: a footer, a version section, metadata of one of a
// few sizes, an image, and a header that may be missing.
constexpr unsigned int kVersionSection = 324; // with the footer behind it
constexpr unsigned int kFooterBytes = 68;     // begins with where the image and the version begin
constexpr unsigned int kVersionField = 12;
constexpr unsigned int kSignatureBytes = 32;
constexpr unsigned int kMusicMatchHeaderBytes = 256;

bool HasSection(const TagReader& read, long long offset) {
    return offset >= 0 && HasText(read, offset, "18273645");
}

/// The metadata's size; 0 when no size puts a version section where it belongs.
unsigned int MetadataBytes(const TagReader& read, long long versionOffset) {
    constexpr unsigned int kBytesOfVersion3 = 7868; // and of all before it
    constexpr unsigned int kLaterBytes[] = {7936, 8004, 8132};
    if (!(MusicMatchVersion(read, versionOffset) > 3.0F)) {
        return kBytesOfVersion3;
    }
    const long long end = versionOffset + kMusicMatchVersionBytes;
    const auto* found =
        std::find_if(std::begin(kLaterBytes), std::end(kLaterBytes), [&](unsigned int bytes) {
            return HasSection(read, end - kVersionSection - bytes);
        });
    return found == std::end(kLaterBytes) ? 0 : *found;
}

} // namespace

bool IsID3v1(const TagReader& read, long long offset) {
    return HasText(read, offset, "TAG");
}

bool IsID3v2(const TagReader& read, long long offset, bool isAppended) {
    // The whole header has to be there before its first bytes count.
    return read(offset, kID3v2HeaderBytes).starts_with(isAppended ? "3DI" : "ID3");
}

std::optional<long long> ID3v2Bytes(const TagReader& read, long long offset) {
    constexpr unsigned int kFooterFlag = 0x10;
    const std::string_view header = read(offset, kID3v2HeaderBytes);
    if (header.empty()) {
        return std::nullopt;
    }
    const unsigned int headers = (Byte(header, 5) & kFooterFlag) != 0 ? 2 : 1;
    return SynchsafeInteger(Byte(header, 6) << 24 | Byte(header, 7) << 16 | Byte(header, 8) << 8 |
                            Byte(header, 9)) +
           headers * kID3v2HeaderBytes;
}

bool IsAPE(const TagReader& read, long long offset) {
    return HasText(read, offset, "APETAGEX");
}

float APEVersion(const TagReader& read, long long offset) {
    const std::string_view footer = read(offset, kAPEVersionOffset + 4);
    return footer.empty() ? 0.0F : APEVersion(footer);
}

std::optional<long long> APEBytes(const TagReader& read, long long offset, bool isAppended) {
    constexpr unsigned int kHasHeaderFlag = 1U << 31;
    const std::string_view footer = read(offset, kAPEFlagsOffset + 4);
    if (footer.empty()) {
        return std::nullopt;
    }
    long long bytes = LittleEndian(footer, kAPESizeOffset); // without a header
    // The first version has none, whatever its flags say.
    if ((LittleEndian(footer, kAPEFlagsOffset) & kHasHeaderFlag) != 0 &&
        APEVersion(footer) > 1.0F) {
        bytes += kAPEFooterBytes;
    }
    // A size that wraps, or that does not even cover the footer, would put the tag behind itself.
    if (bytes > std::numeric_limits<std::uint32_t>::max() ||
        (isAppended && bytes < kAPEFooterBytes)) {
        return std::nullopt;
    }
    return bytes;
}

int Lyrics3Version(const TagReader& read, long long offset) {
    if (HasText(read, offset, "LYRICS200")) {
        return StoredLyrics3Size(read, offset) < 0 ? 0 : 2;
    }
    return HasText(read, offset, "LYRICSEND") ? 1 : 0;
}

std::optional<long long> Lyrics3Bytes(const TagReader& read, long long offset, bool isVersion2) {
    constexpr long long kLongestVersion1 = 5100; // before the closing marker
    if (isVersion2) {
        return StoredLyrics3Size(read, offset) + kLyrics3Digits + kLyrics3MarkerBytes;
    }
    const long long from = std::max(0LL, offset - kLongestVersion1);
    const std::size_t found =
        read(from, static_cast<unsigned int>(offset - from)).rfind("LYRICSBEGIN");
    if (found == std::string_view::npos) {
        return std::nullopt;
    }
    return offset + kLyrics3MarkerBytes - from - static_cast<long long>(found);
}

bool IsMusicMatch(const TagReader& read, long long offset) {
    constexpr std::string_view kSignature = "Brava Software Inc.             ";
    static_assert(kSignature.size() == kSignatureBytes);
    return HasText(read, offset - kSignatureBytes, kSignature) && MetadataBytes(read, offset) != 0;
}

float MusicMatchVersion(const TagReader& read, long long offset) {
    constexpr unsigned int kTextBytes = 4;
    return ParseDecimal(read(offset, kTextBytes));
}

std::optional<long long> MusicMatchBytes(const TagReader& read, long long offset) {
    const long long end = offset + kMusicMatchVersionBytes;
    const std::string_view footer = read(end - kFooterBytes, kVersionField + 4);
    if (footer.empty()) {
        return std::nullopt;
    }
    const long long image =
        static_cast<long long>(LittleEndian(footer, kVersionField)) - LittleEndian(footer, 0);
    const unsigned int metadata = MetadataBytes(read, offset);
    const long long bytes = image + metadata + kVersionSection;
    if (metadata == 0 || image < 0 || bytes > end) {
        return std::nullopt;
    }
    const bool hasHeader = HasSection(read, end - bytes - kMusicMatchHeaderBytes);
    return bytes + (hasHeader ? kMusicMatchHeaderBytes : 0);
}

std::optional<long long> TrailingTagBytes(const TagReader& read, long long end) {
    // In this order: some bytes could be taken for two kinds.
    if (IsID3v1(read, end - kID3v1Bytes)) {
        return kID3v1Bytes;
    }
    if (IsMusicMatch(read, end - kMusicMatchVersionBytes)) {
        return MusicMatchBytes(read, end - kMusicMatchVersionBytes);
    }
    if (IsID3v2(read, end - kID3v2HeaderBytes, true)) {
        return ID3v2Bytes(read, end - kID3v2HeaderBytes);
    }
    if (const int version = Lyrics3Version(read, end - kLyrics3MarkerBytes); version != 0) {
        return Lyrics3Bytes(read, end - kLyrics3MarkerBytes, version == 2);
    }
    if (IsAPE(read, end - kAPEFooterBytes)) {
        return APEBytes(read, end - kAPEFooterBytes, true);
    }
    return std::nullopt;
}

std::optional<long long> LeadingTagBytes(const TagReader& read, long long begin) {
    if (IsID3v2(read, begin, false)) {
        return ID3v2Bytes(read, begin);
    }
    if (IsAPE(read, begin)) {
        return APEBytes(read, begin, false);
    }
    return std::nullopt;
}

unsigned int SynchsafeInteger(unsigned int value) {
    unsigned int result = 0;
    for (int shift = 24; shift >= 0; shift -= 8) {
        result = result << 7 | (value >> shift & 0x7FU);
    }
    return result;
}

float ParseDecimal(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    // from_chars knows no plus sign, and the names of infinity and not-a-number are no digits.
    text.remove_prefix(text.starts_with('+') ? 1 : 0);
    text = text.substr(0, text.find_first_not_of("0123456789.-"));
    double value = 0.0;
    std::from_chars(text.data(), text.data() + text.size(), value, std::chars_format::fixed);
    return static_cast<float>(value);
}

} // namespace bitstream
