#pragma once

#include "audio/Decoder.h"
#include "audio/PeakGrid.h"
#include "audio/PeakLevels.h"
#include "platform/PageArray.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>

/// The peaks of a file's granules, as far as they are known: from the beginning up to where the
/// file was decoded once. Nobody need decode that again to measure it.
///
/// One of those who measure the file fills it at a time; who follows close behind waits for that
/// one, until it is done or no longer comes on. Positions are in sample frames. Any thread.
class PeakIndex {
public:
    /// @return null for a file that is too long, or not to be sought in exactly, or when there is
    ///         too little memory
    [[nodiscard]] static std::shared_ptr<PeakIndex> Make(const AudioFormat& format, SeekCost cost);

    const AudioFormat& Format() const { return m_format; }
    const PeakGrid& Grid() const { return m_grid; }
    /// What it takes when it is full.
    std::size_t Bytes() const;

    /// Up to where the peaks are known; where a granule begins, or the length. Does not wait.
    std::int64_t Known() const { return m_known.load(std::memory_order_acquire); }
    /// The largest of the known granules [first, end).
    PeakLevels Peaks(std::int64_t first, std::int64_t end) const;

    /// Waits until the peaks up to a position are known, for as long as somebody else is at them.
    /// Where nobody is, makes the caller the one who fills the index, if the stretch that he wants
    /// reaches what is not known yet; he is to call Pause soon.
    /// @param who  the caller, known by his address
    /// @return what is known then
    [[nodiscard]] std::int64_t Await(const void* who, std::int64_t begin, std::int64_t end);

    // For the one who fills the index.

    /// @return false when somebody else does so by now, or nobody
    [[nodiscard]] bool Resume(const void* who);
    /// Ends what Await or Resume began: only for so long does who follows wait without asking.
    void Pause();
    /// Stores the peaks of granules that are not known yet, one after the other.
    class Writer {
    public:
        Writer(std::int16_t* to, std::size_t sides) : m_to(to), m_sides(sides) {}
        void Write(const PeakSamples& peaks) {
            m_to[0] = static_cast<std::int16_t>(peaks.left - kOffset);
            if (m_sides == 2) {
                m_to[1] = static_cast<std::int16_t>(peaks.right - kOffset);
            }
            m_to += m_sides;
        }

    private:
        std::int16_t* m_to;
        std::size_t m_sides;
    };
    Writer WriterAt(std::int64_t granule) {
        return {m_peaks.get() + static_cast<std::size_t>(granule) * m_sides, m_sides};
    }
    /// Makes all granules below this one known.
    void Publish(std::int64_t granule);
    /// Somebody else may fill the index. Without effect when somebody else does.
    void Leave(const void* who);

private:
    static constexpr int kOffset = 32768; // of the stored peaks

    using Clock = std::chrono::steady_clock;

    PeakIndex(const AudioFormat& format, const PeakGrid& grid, PageArray<std::int16_t> peaks);
    static std::size_t Sides(const AudioFormat& format) { return format.channels == 1 ? 1 : 2; }
    bool IsFilledByAnother(const void* who) const;

    const AudioFormat m_format;
    const PeakGrid m_grid;
    const std::size_t m_sides;             // 1 for mono
    const PageArray<std::int16_t> m_peaks; // less 32768, so that they need no more than 16 bits

    std::atomic<std::int64_t> m_known{0}; // filler -> any: publishes the peaks up to there

    // under the mutex
    std::mutex m_mutex;
    std::condition_variable m_changed;
    const void* m_filler = nullptr;
    std::thread::id m_fillerThread;
    bool m_isFilling = false;       // the filler is in a call
    Clock::time_point m_pausedTime; // when the last one ended
};
