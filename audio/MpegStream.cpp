#include "audio/MpegStream.h"

#include "bitstream/FrameFacts.h"
#include "bitstream/TagSizes.h"

#include <algorithm>
#include <cstring>

namespace {

/// Where the audio lies between the tags at the file's two ends. Offsets in bytes.
struct AudioBounds {
    std::int64_t beginBytes = 0; ///< beyond the file if a leading tag reaches there
    std::int64_t endBytes = 0;
};

/// Steps over any number of tags. Unlike the cutters' parser, which refuses a file with a damaged
/// tag, it stops before one and leaves it to the audio: a recording that cannot be cut can be
/// heard.
AudioBounds FindAudioBounds(FileWindow& window) {
    const bitstream::TagReader read = [&](std::int64_t offset, unsigned int count) {
        const std::uint8_t* bytes = window.Bytes(offset, count);
        return bytes != nullptr ? std::string_view(reinterpret_cast<const char*>(bytes), count)
                                : std::string_view();
    };
    AudioBounds bounds{0, window.Source().State().sizeBytes};
    for (std::size_t tags = 0; tags < bitstream::kMostTags; ++tags) {
        const std::int64_t bytes = bitstream::TrailingTagBytes(read, bounds.endBytes).value_or(0);
        if (bytes == 0 || bytes > bounds.endBytes) {
            break;
        }
        bounds.endBytes -= bytes;
    }
    for (std::size_t tags = 0; tags < bitstream::kMostTags; ++tags) {
        const std::int64_t bytes = bitstream::LeadingTagBytes(read, bounds.beginBytes).value_or(0);
        if (bytes == 0) {
            break;
        }
        bounds.beginBytes += bytes;
    }
    return bounds;
}

bool Matches(const std::uint8_t* bytes, const char* text) {
    return std::memcmp(bytes, text, std::strlen(text)) == 0;
}

/// True when another frame of the stream lies within reach behind this one.
bool IsFollowedAfterGap(FileWindow& window, const MpegStream& stream, std::int64_t end) {
    for (std::int64_t offset = end; offset <= end + bitstream::kSearchBytes; ++offset) {
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
    constexpr std::size_t kIdentifierBytes = 4;
    // The layer is not looked at: the cutters do not either.
    const std::size_t xingOffset = FrameHeader::kBytes + header.sideInfoBytes;
    const std::uint8_t* bytes = window.Bytes(offset, bitstream::kVBRIOffset + kIdentifierBytes);
    return bytes != nullptr &&
           (Matches(bytes + xingOffset, "Xing") || Matches(bytes + xingOffset, "Info") ||
            Matches(bytes + bitstream::kVBRIOffset, "VBRI"));
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
    const AudioBounds bounds = FindAudioBounds(window);
    const std::int64_t begin = bounds.beginBytes;
    MpegStream stream;
    stream.endBytes = bounds.endBytes;
    const std::int64_t limit = std::min(begin + bitstream::kSearchBytes, stream.endBytes);
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
