#pragma once

#include "audio/KnownHeaders.h"
#include "audio/MpegStream.h"

#include <cstdint>

/// Steps through the frames of an MPEG stream, over whatever lies between them.
///
/// Where no frame begins at the end of the last one, it is looked for up to three bytes off (an
/// encoder's wrong padding bit), then further ahead, as the cutters' parser does. What comes next
/// depends on the offset alone, so that a walk can start anew at any frame. One thread at a time.
class FrameWalker {
public:
    /// Both are only referred to.
    FrameWalker(FileWindow& window, const MpegStream& stream);

    /// The next frame will be the first one at or after this offset.
    void MoveTo(std::int64_t offset);

    /// Steps to the next frame.
    /// @return false at the end: the frames stop, or the next is cut short, or none lies within
    ///         bitstream::kSearchBytes. Further steps then fail too.
    [[nodiscard]] bool Next();

    /// Of the current frame.
    std::int64_t OffsetBytes() const { return m_offset; }
    const FrameHeader& Header() const { return m_header; }
    /// The current frame's bytes, null when they cannot be read; valid until the next call.
    [[nodiscard]] const std::uint8_t* Bytes() {
        return m_window.Bytes(m_offset, m_header.sizeBytes);
    }

private:
    [[nodiscard]] bool Take(std::int64_t offset);
    [[nodiscard]] bool TakeNear(std::int64_t expected);
    [[nodiscard]] bool Search(std::int64_t expected);

    FileWindow& m_window;
    const MpegStream& m_stream;
    KnownHeaders m_known;
    std::int64_t m_next;       // where the next frame should begin
    std::int64_t m_offset = 0; // of the current frame
    FrameHeader m_header;      // of the current frame
};
