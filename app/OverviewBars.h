#pragma once

#include "adaptor/WaveContext.h"

#include <cstddef>
#include <vector>

/// A wave image in fewer columns: of each group of them the longest bars. Lengths are in pixels of
/// the wave image.
class OverviewBars {
public:
    struct Bar {
        int up = 0;
        int down = 0;
    };

    /// The next Update reads an image anew. Bars stay as they are until their columns are finished
    /// there, for it shows the same audio; Clear when it does not.
    void Restart(int count);
    void Clear() { m_bars.clear(); }

    /// Takes in the columns that have been finished since the last time.
    /// @return whether a bar has changed
    bool Update(const WaveContext& wave);

    const std::vector<Bar>& Get() const { return m_bars; }

private:
    std::vector<Bar> m_bars;
    std::size_t m_next = 0; // the first bar whose columns were not all finished
};
