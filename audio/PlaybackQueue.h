#pragma once

#include "audio/OutputDevice.h"

#include <atomic>
#include <cstdint>
#include <semaphore>
#include <span>
#include <vector>

/// The samples between the thread that decodes them and the device that plays them, and the account
/// of what is heard when. Positions are sample frames of the stream.
class PlaybackQueue : public SampleSource {
public:
    explicit PlaybackQueue(const OutputFormat& format);

    // The decoding side: one thread at a time.

    /// Empties the queue; what is pushed next plays at this position. Only while no device plays
    /// it.
    void Restart(std::int64_t position);
    /// How many sample frames can be pushed.
    std::int64_t Room() const;
    /// @param samples  whole sample frames, no more than there is room for
    void Push(std::span<const std::int16_t> samples);
    std::int64_t Capacity() const { return m_capacity; }
    /// Nothing comes after what was pushed.
    void MarkEnd();
    bool Ended() const { return m_ended.load(); }
    /// Waits until the device has asked for samples, or Wake was called, since the last wait.
    void Await() { m_wake.acquire(); }

    // Any thread.

    void Wake() { m_wake.release(); }
    /// What is heard now.
    std::int64_t Heard() const;
    /// What was handed out to the device ends here.
    std::int64_t Taken() const { return m_taken.load(); }
    /// The end is marked, and all before it was heard.
    bool Drained() const { return m_drained.load(); }

    // The device's thread.

    void Fill(std::int16_t* samples, std::int64_t sampleFrames) noexcept override;

private:
    std::size_t Index(std::int64_t position) const;

    const OutputFormat m_format;
    std::vector<std::int16_t> m_ring;
    const std::int64_t m_capacity; // in sample frames

    // decoding side -> device: the samples below it and, with m_ended, that no more come
    std::atomic<std::int64_t> m_pushed{0};
    std::atomic<bool> m_ended{false};

    // device -> decoding side: the room up to here
    std::atomic<std::int64_t> m_taken{0};
    std::atomic<bool> m_drained{false};
    std::counting_semaphore<> m_wake{0};

    // device -> any: since m_heardSince what lies in this range is heard. The sequence is odd while
    // they are written; who finds it odd or changed reads again.
    std::atomic<unsigned> m_sequence{0};
    std::atomic<std::int64_t> m_heardFrom{0};
    std::atomic<std::int64_t> m_heardTo{0};
    std::atomic<std::int64_t> m_heardSince{0}; // in nanoseconds of the steady clock
};
