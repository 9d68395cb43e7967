#pragma once

#include "audio/ReadFailures.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

/// What a decoder delivers: 16-bit signed samples, interleaved. A sample frame is one sample per
/// channel.
struct AudioFormat {
    std::uint32_t rateHz = 0;
    std::uint32_t channels = 0;
    std::int64_t sampleFrames = 0; ///< length of the whole, exact

    std::uint32_t SampleFrameBytes() const {
        return channels * static_cast<std::uint32_t>(sizeof(std::int16_t));
    }
    bool operator==(const AudioFormat&) const = default;
};

/// What reading a few samples somewhere takes.
enum class SeekCost {
    Low,     ///< hardly more than the samples themselves
    High,    ///< much more: what lies before them has to be decoded
    Unknown, ///< nor is it certain that they are the same to the bit
};

/// Delivers the samples of one file from any place on. The samples of a place are always the same.
///
/// One thread at a time.
class Decoder {
public:
    virtual ~Decoder() = default;

    virtual const AudioFormat& Format() const = 0;

    /// The next Read begins here.
    /// @param sampleFrame  0 to the length inclusive
    virtual void Seek(std::int64_t sampleFrame) = 0;

    /// The next samples, valid until the next call.
    /// @param maxSampleFrames  at least 1; there may be fewer, without this being the end
    /// @return whole sample frames; empty only at the end
    [[nodiscard]] virtual std::span<const std::int16_t> Read(std::int64_t maxSampleFrames) = 0;

    /// Another decoder of the same file, for one more thread that reads short stretches here and
    /// there: it decodes on the thread that reads, from as near before a place as gives exactly the
    /// samples that this one gives, and has no threads of its own. Independent of this one, whose
    /// reading goes on where it is. Any thread.
    /// @throws std::bad_alloc
    virtual std::unique_ptr<Decoder> ForRandomAccess() const = 0;

    /// Of a decoder for random access.
    virtual SeekCost CostOfSeeking() const = 0;

    /// What the decoder knows of the places in the file and the file's state; empty for a format
    /// that needs no such knowledge.
    virtual std::vector<std::int64_t> SeekInfo() const { return {}; }

    /// The earliest place of the file that anybody in the process could not read or decode while it
    /// was open; what was delivered there is silence. Whoever keeps what was delivered looks here
    /// first. Any thread; does not wait.
    virtual std::optional<ReadFailure> Failure() const { return {}; }
};
