#include "audio/PlaybackQueue.h"

#include <algorithm>
#include <cassert>
#include <chrono>

namespace {

/// Half a second: what a busy machine may keep the decoding waiting.
std::int64_t CapacityFor(std::uint32_t rateHz) {
    return std::clamp<std::int64_t>(rateHz / 2, 8192, 262144);
}

std::int64_t NowNanoseconds() {
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

PlaybackQueue::PlaybackQueue(const OutputFormat& format)
    : m_format(format),
      m_ring(static_cast<std::size_t>(CapacityFor(format.rateHz)) * format.channels),
      m_capacity(CapacityFor(format.rateHz)) {
}

void PlaybackQueue::Restart(std::int64_t position) {
    m_pushed = position;
    m_taken = position;
    m_ended = false;
    m_drained = false;
    ++m_sequence;
    m_heardFrom = position;
    m_heardTo = position;
    ++m_sequence;
}

std::int64_t PlaybackQueue::Room() const {
    return m_capacity - (m_pushed.load() - m_taken.load());
}

void PlaybackQueue::Push(std::span<const std::int16_t> samples) {
    const std::int64_t pushed = m_pushed.load();
    const std::size_t index = Index(pushed);
    const std::size_t beforeWrap = std::min(samples.size(), m_ring.size() - index);
    std::copy_n(samples.begin(), beforeWrap, m_ring.begin() + static_cast<std::ptrdiff_t>(index));
    std::copy(samples.begin() + static_cast<std::ptrdiff_t>(beforeWrap), samples.end(),
              m_ring.begin());
    m_pushed = pushed + static_cast<std::int64_t>(samples.size() / m_format.channels);
    assert(Room() >= 0);
}

void PlaybackQueue::MarkEnd() {
    m_ended = true;
}

std::int64_t PlaybackQueue::Heard() const {
    for (;;) {
        const unsigned sequence = m_sequence;
        const std::int64_t from = m_heardFrom;
        const std::int64_t to = m_heardTo;
        const std::int64_t since = m_heardSince;
        if (sequence % 2 == 0 && sequence == m_sequence) {
            const double seconds = static_cast<double>(NowNanoseconds() - since) / 1e9;
            const double heard = seconds * m_format.rateHz;
            return heard < static_cast<double>(to - from) ? from + static_cast<std::int64_t>(heard)
                                                          : to;
        }
    }
}

void PlaybackQueue::Fill(std::int16_t* samples, std::int64_t sampleFrames) noexcept {
    // In this order: once the end is seen, so is all before it.
    const bool ended = m_ended;
    const std::int64_t pushed = m_pushed;
    const std::int64_t taken = m_taken;
    const std::int64_t count = std::min(sampleFrames, pushed - taken);
    const std::size_t wanted = static_cast<std::size_t>(count) * m_format.channels;
    const std::size_t index = Index(taken);
    const std::size_t beforeWrap = std::min(wanted, m_ring.size() - index);
    std::int16_t* to =
        std::copy_n(m_ring.begin() + static_cast<std::ptrdiff_t>(index), beforeWrap, samples);
    to = std::copy_n(m_ring.begin(), wanted - beforeWrap, to);
    std::fill(to, samples + sampleFrames * m_format.channels, std::int16_t{0});

    // A device asks for samples when it begins to play those that it got the last time.
    const std::int64_t heardFrom = m_heardTo;
    ++m_sequence;
    m_heardFrom = heardFrom;
    m_heardTo = taken;
    m_heardSince = NowNanoseconds();
    ++m_sequence;
    m_taken = taken + count;
    if (ended && heardFrom == pushed) {
        m_drained = true;
    }
    m_wake.release();
}

std::size_t PlaybackQueue::Index(std::int64_t position) const {
    return static_cast<std::size_t>(position % m_capacity) * m_format.channels;
}
