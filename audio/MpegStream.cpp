#include "audio/MpegStream.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::int64_t kId3v1Bytes = 128;
constexpr std::int64_t kId3v2HeaderBytes = 10;
constexpr std::int64_t kApeFooterBytes = 32;

bool Matches(const std::uint8_t* bytes, const char* text) {
    return bytes != nullptr && std::memcmp(bytes, text, std::strlen(text)) == 0;
}

/// Size of the ID3v2 tag at this offset, 0 for none.
std::int64_t Id3v2Bytes(FileWindow& window, std::int64_t offset) {
    const std::uint8_t* bytes = window.Bytes(offset, kId3v2HeaderBytes);
    if (!Matches(bytes, "ID3") || ((bytes[6] | bytes[7] | bytes[8] | bytes[9]) & 0x80) != 0) {
        return 0;
    }
    const std::int64_t body = bytes[6] << 21 | bytes[7] << 14 | bytes[8] << 7 | bytes[9];
    const bool footer = (bytes[5] & 0x10) != 0;
    return kId3v2HeaderBytes + body + (footer ? kId3v2HeaderBytes : 0);
}

/// Size of the APE tag that ends at this offset, 0 for none.
std::int64_t ApeBytes(FileWindow& window, std::int64_t end) {
    const std::uint8_t* footer = window.Bytes(end - kApeFooterBytes, kApeFooterBytes);
    if (!Matches(footer, "APETAGEX")) {
        return 0;
    }
    const std::int64_t body = footer[12] | footer[13] << 8 | footer[14] << 16 |
                              static_cast<std::int64_t>(footer[15]) << 24;
    const bool header = (footer[23] & 0x80) != 0;
    const std::int64_t size = body + (header ? kApeFooterBytes : 0);
    return body >= kApeFooterBytes && size <= end ? size : 0;
}

std::int64_t EndOfLeadingTags(FileWindow& window) {
    std::int64_t offset = 0;
    while (const std::int64_t bytes = Id3v2Bytes(window, offset)) {
        offset += bytes;
    }
    return offset;
}

std::int64_t BeginOfTrailingTags(FileWindow& window) {
    std::int64_t end = window.Source().State().sizeBytes;
    if (Matches(window.Bytes(end - kId3v1Bytes, kId3v1Bytes), "TAG")) {
        end -= kId3v1Bytes;
    }
    return end - ApeBytes(window, end);
}

/// True when another frame of the stream lies within reach behind this one.
bool IsFollowedAfterGap(FileWindow& window, const MpegStream& stream, std::int64_t end) {
    for (std::int64_t offset = end; offset <= end + MpegStream::kSearchBytes; ++offset) {
        if (HeaderAt(window, stream, offset)) {
            return true;
        }
    }
    return false;
}

/// Takes the frame at the offset for the stream's first one when what follows bears it out: any
/// four bytes may look like a header.
bool TryFirstFrame(FileWindow& window, MpegStream& stream, std::int64_t offset, bool mayHaveGap) {
    const std::uint8_t* bytes = window.Bytes(offset, FrameHeader::kBytes);
    const auto header = bytes != nullptr ? FrameHeader::Parse(bytes) : std::nullopt;
    if (!header || header->sizeBytes > stream.endBytes - offset) {
        return false;
    }
    stream.first = *header;
    stream.beginBytes = offset;
    return IsFollowed(window, stream, offset, *header) ||
           (mayHaveGap && IsFollowedAfterGap(window, stream, offset + header->sizeBytes));
}

bool IsVbrHeader(FileWindow& window, const FrameHeader& header, std::int64_t offset) {
    constexpr std::size_t kVbriOffset = 36;
    constexpr std::size_t kIdentifierBytes = 4;
    // Neither place depends on a check word; the layer is not looked at, as the cutters do not.
    const std::size_t xingOffset = FrameHeader::kBytes + header.sideInfoBytes;
    const std::uint8_t* bytes = window.Bytes(offset, kVbriOffset + kIdentifierBytes);
    return bytes != nullptr &&
           (Matches(bytes + xingOffset, "Xing") || Matches(bytes + xingOffset, "Info") ||
            Matches(bytes + kVbriOffset, "VBRI"));
}

} // namespace

std::optional<FrameHeader> HeaderAt(FileWindow& window, const MpegStream& stream,
                                    std::int64_t offset) {
    const std::uint8_t* bytes = window.Bytes(offset, FrameHeader::kBytes);
    if (bytes == nullptr || bytes[0] != 0xFF) {
        return std::nullopt;
    }
    auto header = FrameHeader::Parse(bytes);
    return header && header->SameStream(stream.first) ? header : std::nullopt;
}

bool IsFollowed(FileWindow& window, const MpegStream& stream, std::int64_t offset,
                const FrameHeader& header) {
    const std::int64_t next = offset + header.sizeBytes;
    const auto headerBytes = static_cast<std::int64_t>(FrameHeader::kBytes);
    return stream.endBytes - next < headerBytes || HeaderAt(window, stream, next);
}

std::optional<MpegStream> FindMpegStream(FileWindow& window) {
    MpegStream stream;
    stream.endBytes = BeginOfTrailingTags(window);
    const std::int64_t begin = EndOfLeadingTags(window);
    const std::int64_t limit = std::min(begin + MpegStream::kSearchBytes, stream.endBytes);
    bool found = false;
    for (std::int64_t offset = begin; offset <= limit && !found; ++offset) {
        found = TryFirstFrame(window, stream, offset, false);
    }
    // A gap right behind the first frame is believed only where the audio should begin.
    if (!found && !TryFirstFrame(window, stream, begin, true)) {
        return std::nullopt;
    }
    if (IsVbrHeader(window, stream.first, stream.beginBytes)) {
        stream.beginBytes += stream.first.sizeBytes;
    }
    return stream;
}
