#include "adaptor/WaveContext.h"

namespace {

/// @param pixel  on the centre line
/// @param step   to the next pixel away from it
void PaintBar(std::uint32_t* pixel, std::ptrdiff_t step, float length, const LevelColors& colors) {
    for (std::size_t k = 1; k < colors.size() && length > static_cast<float>(k - 1); ++k) {
        pixel += step;
        *pixel = colors[k];
    }
}

} // namespace

void WaveContext::PaintColumn(float left, float right, const LevelColors& colors) {
    const int half = m_size.height / 2;
    const int column = m_finishedColumns.load(std::memory_order_relaxed);
    std::uint32_t* const centre =
        m_pixels + GetWidth() * static_cast<std::size_t>(half) + static_cast<std::size_t>(column);
    PaintBar(centre, -std::ptrdiff_t{m_size.width}, static_cast<float>(half) * left, colors);
    PaintBar(centre, m_size.width, static_cast<float>(half) * right, colors);
    Publish(column + 1);
}
