#include "audio/MpegStream.h"

#include "audio/TagBounds.h"

#include <algorithm>
#include <cstring>

namespace {

bool Matches(const std::uint8_t* bytes, const char* text) {
    return std::memcmp(bytes, text, std::strlen(text)) == 0;
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
    const TagBounds bounds = FindTagBounds(window);
    const std::int64_t begin = bounds.beginBytes;
    MpegStream stream;
    stream.endBytes = bounds.endBytes;
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
