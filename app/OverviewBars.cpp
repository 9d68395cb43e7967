#include "app/OverviewBars.h"

#include <algorithm>
#include <cstdint>

namespace {

/// The longest bar of the columns first to last - 1 in one direction. A bar has no holes, so what
/// is asked of a column is only whether it is longer than those before.
int LongestBar(const WaveContext& wave, std::size_t first, std::size_t last, int direction) {
    const int half = wave.GetSize().height / 2;
    const auto width = static_cast<std::size_t>(wave.GetSize().width);
    int length = 0;
    for (std::size_t column = first; column < last; ++column) {
        const auto isPainted = [&](int distance) {
            const auto row = static_cast<std::size_t>(half + direction * distance);
            return wave.GetPixels()[row * width + column] != 0;
        };
        while (length < half && isPainted(length + 1)) {
            ++length;
        }
    }
    return length;
}

} // namespace

void OverviewBars::Restart(int count) {
    m_bars.resize(static_cast<std::size_t>(std::max(count, 0)));
    m_next = 0;
}

bool OverviewBars::Update(const WaveContext& wave) {
    const auto width = static_cast<std::size_t>(wave.GetSize().width);
    const auto finished = static_cast<std::size_t>(wave.GetFinishedColumns());
    const std::size_t before = m_next;
    for (; m_next < m_bars.size(); ++m_next) {
        const std::size_t first = m_next * width / m_bars.size();
        const std::size_t last = std::max((m_next + 1) * width / m_bars.size(), first + 1);
        if (last > finished) {
            break;
        }
        m_bars[m_next] = {LongestBar(wave, first, last, -1), LongestBar(wave, first, last, 1)};
    }
    return m_next != before;
}
