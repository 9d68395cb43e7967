#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>

/// Tags at the two ends of an MPEG audio file: which kind stands at a place and how long it is.
/// What they hold is not read. Offsets and sizes in bytes.
namespace bitstream {

/// Fetches the bytes [offset, offset + count) of a file, valid until the next call. Where they
/// cannot be had it answers with nothing, and no tag is found, or throws, and the exception goes
/// through.
using TagReader = std::function<std::string_view(long long offset, unsigned int count)>;

/// No file has more than a handful of tags; one that consists of tiny ones throughout is hostile.
inline constexpr std::size_t kMostTags = 4096;

inline constexpr unsigned int kID3v1Bytes = 128;
inline constexpr unsigned int kID3v2HeaderBytes = 10; ///< the footer's too
inline constexpr unsigned int kAPEFooterBytes = 32;   ///< the header's too
inline constexpr unsigned int kLyrics3MarkerBytes = 9;
inline constexpr unsigned int kMusicMatchVersionBytes = 16; ///< from the version text to the end

// Whether a tag of a kind stands at an offset: that of its header or first byte, of its footer
// (ID3v2 and APE at the end of a file), closing marker (Lyrics3) or version text (MusicMatch). The
// sizes and versions below are asked for at the offsets where one was found.

bool IsID3v1(const TagReader& read, long long offset);
bool IsID3v2(const TagReader& read, long long offset, bool isAppended);
bool IsAPE(const TagReader& read, long long offset);
/// @return the version, 1 or 2; 0 where there is no tag
int Lyrics3Version(const TagReader& read, long long offset);
bool IsMusicMatch(const TagReader& read, long long offset);

/// The size of the whole tag; nothing where the tag is damaged.
std::optional<long long> ID3v2Bytes(const TagReader& read, long long offset);
std::optional<long long> APEBytes(const TagReader& read, long long offset, bool isAppended);
std::optional<long long> Lyrics3Bytes(const TagReader& read, long long offset, bool isVersion2);
std::optional<long long> MusicMatchBytes(const TagReader& read, long long offset);

// The version of the tag's format, where the size depends on it.

float APEVersion(const TagReader& read, long long offset);
float MusicMatchVersion(const TagReader& read, long long offset);

/// The size of the tag of any kind that ends or begins at an offset; nothing where there is none or
/// where it is damaged.
std::optional<long long> TrailingTagBytes(const TagReader& read, long long end);
std::optional<long long> LeadingTagBytes(const TagReader& read, long long begin);

/// The value of four bytes that hold seven bits each, the highest first (ID3v2.4.0, 6.2).
unsigned int SynchsafeInteger(unsigned int value);

/// The number that a text begins with, after blanks: digits with a sign and a fraction where there
/// are any, 0 where there is none. The same in every locale.
float ParseDecimal(std::string_view text);

} // namespace bitstream
