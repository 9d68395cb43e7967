#include "audio/FrameWalker.h"

#include "bitstream/FrameFacts.h"

#include <algorithm>

FrameWalker::FrameWalker(FileWindow& window, const MpegStream& stream)
    : m_window(window), m_stream(stream), m_next(stream.beginBytes) {
}

void FrameWalker::MoveTo(std::int64_t offset) {
    m_next = offset;
}

bool FrameWalker::Next() {
    const std::int64_t expected = m_next;
    if (Take(expected)) {
        return true;
    }
    // A frame that stands at its place but is cut short is the stream's end: nothing in it is a
    // frame of its own.
    if (!HeaderAt(m_window, m_stream, expected) && (TakeNear(expected) || Search(expected))) {
        return true;
    }
    m_next = m_stream.endBytes;
    return false;
}

/// Makes the frame at the offset the current one, if a whole one lies there.
bool FrameWalker::Take(std::int64_t offset) {
    const std::uint8_t* bytes = m_window.Bytes(offset, FrameHeader::kBytes);
    const FrameHeader* header = bytes != nullptr ? m_known.Parse(bytes) : nullptr;
    if (header == nullptr || !header->SameStream(m_stream.first) ||
        header->sizeBytes > m_stream.endBytes - offset) {
        return false;
    }
    m_offset = offset;
    m_header = *header;
    m_next = offset + header->sizeBytes;
    return true;
}

bool FrameWalker::TakeNear(std::int64_t expected) {
    for (std::int64_t distance = 1; distance <= bitstream::kNearBytes; ++distance) {
        if (Take(expected + distance) || Take(expected - distance)) {
            return true;
        }
    }
    return false;
}

/// Takes the first frame ahead that is followed by another one or by the stream's end: anything
/// else may be bytes that only look like a header.
bool FrameWalker::Search(std::int64_t expected) {
    const std::int64_t begin = expected + bitstream::kNearBytes + 1;
    const std::int64_t limit = std::min(expected + bitstream::kSearchBytes, m_stream.endBytes);
    for (std::int64_t offset = begin; offset <= limit; ++offset) {
        if (Take(offset) && IsFollowed(m_window, m_stream, offset, m_header)) {
            return true;
        }
    }
    return false;
}
