#pragma once

#include "audio/FrameHeader.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

struct mpg123_handle_struct;

/// Decodes MPEG audio frames one by one with libmpg123.
///
/// Every frame handed in gives exactly its number of sample frames: libmpg123 sees nothing but
/// whole frames of one stream, and so never searches, skips or trims. One thread at a time.
class FrameDecoder {
public:
    /// @param first  the stream's first header: sampling rate and channels of all that is decoded
    /// @throws std::bad_alloc
    explicit FrameDecoder(const FrameHeader& first);

    /// Forgets all earlier frames.
    void Clear();

    /// Decodes the next frame; frames with another channel count are converted.
    /// @param frame    null for a frame that could not be read
    /// @param samples  sampleFrames x channels of the stream's first header; silence when the frame
    ///                 cannot be decoded
    /// @return false when that is for want of memory
    [[nodiscard]] bool Decode(const std::uint8_t* frame, std::size_t bytes, std::int16_t* samples);

    /// Leads the decoder through a frame before those that are to be decoded: its part of the bit
    /// reservoir is kept, its sound is not. Other than by decoding it, nothing fails here for want
    /// of earlier frames.
    /// @param frame  null for a frame that could not be read
    /// @return false for want of memory
    [[nodiscard]] bool FillReservoir(const std::uint8_t* frame, const FrameHeader& header);

    /// FillReservoir begins anew: the frames that follow are not those after the last one.
    void EmptyReservoir() { m_reservoirBytes = 0; }
    /// How much FillReservoir has kept since.
    std::uint32_t ReservoirBytes() const { return m_reservoirBytes; }

    std::size_t SamplesPerFrame() const { return m_samplesPerFrame; }

private:
    struct Deleter {
        void operator()(mpg123_handle_struct* handle) const;
    };

    bool TryDecode(const std::uint8_t* frame, std::size_t bytes, std::int16_t* samples);

    std::unique_ptr<mpg123_handle_struct, Deleter> m_handle;
    std::size_t m_samplesPerFrame;
    std::vector<std::uint8_t> m_empty;   // a frame that holds nothing
    std::uint32_t m_reservoirBytes = 0;  // filled since the decoder was cleared
    std::vector<std::uint8_t> m_muted;   // a frame that was changed
    std::vector<std::int16_t> m_dropped; // what is not wanted
};
