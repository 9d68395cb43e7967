#pragma once

#include "adaptor/LevelColors.h"
#include "engine/SIZE.h"

#include <atomic>
#include <cstddef>
#include <cstdint>

/// Draws a wave image into pixel memory, column by column from the left, while others read the
/// columns that are finished.
///
/// A pixel is the bytes R, G, B and one to be ignored; rows follow each other from the top without
/// a gap. The memory is the caller's, zero (black) at first.
class WaveContext {
public:
    /// @param size  at least one column; the rows above and below the centre one are no more than
    ///              there are level colours
    WaveContext(std::uint32_t* pixels, SIZE size) : m_pixels(pixels), m_size(size) {}
    WaveContext(const WaveContext&) = delete;
    WaveContext& operator=(const WaveContext&) = delete;
    ~WaveContext() = default;

    // Any thread.

    const std::uint32_t* GetPixels() const { return m_pixels; }
    SIZE GetSize() const { return m_size; }
    std::size_t GetBytesPerRow() const { return sizeof *m_pixels * GetWidth(); }
    /// The pixels of the columns below this one are final; those of the others are not to be read.
    int GetFinishedColumns() const { return m_finishedColumns.load(std::memory_order_acquire); }

    // The scan's thread.

    /// Paints the next column: a bar upwards for the left and one downwards for the right peak.
    /// @param left, right  0 to 1
    void PaintColumn(float left, float right, const LevelColors& colors);
    /// Leaves the columns that were not painted black, for good.
    void Finish() { Publish(m_size.width); }

private:
    std::size_t GetWidth() const { return static_cast<std::size_t>(m_size.width); }
    void Publish(int columns) { m_finishedColumns.store(columns, std::memory_order_release); }

    std::uint32_t* const m_pixels;
    const SIZE m_size;
    std::atomic<int> m_finishedColumns{0}; // scan -> any: publishes the pixels of these columns
};
