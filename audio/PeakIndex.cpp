#include "audio/PeakIndex.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace {

/// How finely a file is remembered whose edges are so expensive to decode: at most so many granules
/// a block up to so many hours. The shorter a file is, the narrower its stretches get.
struct Resolution {
    SeekCost cost;
    double hours;
    std::int64_t granulesPerBlock;
};

constexpr Resolution kResolutions[] = {
    {SeekCost::High, 1.0 / 3, 84}, {SeekCost::High, 2, 21}, {SeekCost::High, 12, 7},
    {SeekCost::High, 27, 3},       {SeekCost::High, 83, 1}, {SeekCost::Low, 27, 3},
    {SeekCost::Low, 83, 1},
};

/// @return 0 when the file is not to be remembered at all
std::int64_t GranulesPerBlock(const AudioFormat& format, SeekCost cost) {
    constexpr double kHour = 3600;
    constexpr std::int64_t kLeastSampleFrames = 8; // of a granule
    const double hours = static_cast<double>(format.sampleFrames) / format.rateHz / kHour;
    const auto* const found = std::ranges::find_if(kResolutions, [&](const Resolution& row) {
        return row.cost == cost && hours <= row.hours;
    });
    if (found == std::end(kResolutions)) {
        return 0;
    }
    const auto most =
        static_cast<std::int64_t>(PeakGrid::kBlockSeconds * format.rateHz) / kLeastSampleFrames;
    return std::clamp(most, std::int64_t{1}, found->granulesPerBlock);
}

} // namespace

std::shared_ptr<PeakIndex> PeakIndex::Make(const AudioFormat& format, SeekCost cost) {
    const std::int64_t granulesPerBlock = GranulesPerBlock(format, cost);
    if (granulesPerBlock == 0 || format.sampleFrames == 0) {
        return nullptr;
    }
    const PeakGrid grid(format.rateHz, format.sampleFrames, granulesPerBlock);
    auto peaks =
        MakePageArray<std::int16_t>(static_cast<std::size_t>(grid.Count()) * Sides(format));
    return peaks ? std::shared_ptr<PeakIndex>(new PeakIndex(format, grid, std::move(peaks)))
                 : nullptr;
}

PeakIndex::PeakIndex(const AudioFormat& format, const PeakGrid& grid, PageArray<std::int16_t> peaks)
    : m_format(format), m_grid(grid), m_sides(Sides(format)), m_peaks(std::move(peaks)) {
}

std::size_t PeakIndex::Bytes() const {
    return static_cast<std::size_t>(m_grid.Count()) * m_sides * sizeof m_peaks[0];
}

PeakLevels PeakIndex::Peaks(std::int64_t first, std::int64_t end) const {
    const std::span stored(m_peaks.get() + static_cast<std::size_t>(first) * m_sides,
                           static_cast<std::size_t>(std::max(end - first, std::int64_t{0})) *
                               m_sides);
    const auto [even, odd] = HighestAlternating(stored);
    const auto level = [](int peak) { return static_cast<float>(peak + kOffset) / 32768.0F; };
    if (m_sides == 1) {
        const float peak = level(std::max(even, odd));
        return {peak, peak};
    }
    return {level(even), level(odd)};
}

std::int64_t PeakIndex::Await(const void* who, std::int64_t begin, std::int64_t end) {
    constexpr std::chrono::milliseconds kPatience{100}; // with one who makes no calls
    if (Known() >= end) {
        return Known();
    }
    std::unique_lock lock(m_mutex);
    while (Known() < end && begin <= Known() && IsFilledByAnother(who)) {
        if (!m_isFilling && (m_fillerThread == std::this_thread::get_id() ||
                             Clock::now() - m_pausedTime >= kPatience)) {
            m_filler = nullptr;
        } else {
            m_changed.wait_for(lock, kPatience);
        }
    }
    if (Known() < end && begin <= Known()) {
        m_filler = who;
        m_fillerThread = std::this_thread::get_id();
        m_isFilling = true;
    }
    return Known();
}

bool PeakIndex::IsFilledByAnother(const void* who) const {
    return m_filler != nullptr && m_filler != who;
}

bool PeakIndex::Resume(const void* who) {
    const std::lock_guard lock(m_mutex);
    m_isFilling = m_isFilling || m_filler == who;
    return m_filler == who;
}

void PeakIndex::Pause() {
    const std::lock_guard lock(m_mutex);
    m_isFilling = false;
    m_fillerThread = std::this_thread::get_id();
    m_pausedTime = Clock::now();
}

void PeakIndex::Publish(std::int64_t granule) {
    {
        const std::lock_guard lock(m_mutex);
        m_known.store(m_grid.Begin(granule), std::memory_order_release);
    }
    m_changed.notify_all();
}

void PeakIndex::Leave(const void* who) {
    {
        const std::lock_guard lock(m_mutex);
        if (m_filler == who) {
            m_filler = nullptr;
            m_isFilling = false;
        }
    }
    m_changed.notify_all();
}
