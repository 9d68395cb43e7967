#pragma once

#include "cutting/WholeWAVLayout.h"

#include <cstdint>
#include <cstdio>
#include <span>
#include <vector>

/// The samples of a WAV by sample frame, through a window that follows the reading.
class SampleReader {
public:
    /// @param file  stays the caller's, who reads nothing else from it meanwhile
    SampleReader(std::FILE* file, const WholeWAVLayout& layout);

    long long Count() const { return m_count; }
    std::size_t FrameBytes() const { return m_frameBytes; }
    /// Sample frames that one call can give.
    long long MostFrames() const { return m_mostFrames; }

    /// Valid until the next call. Throws std::system_error.
    /// @param begin  a sample frame
    /// @param count  at most MostFrames, and no more than there are
    std::span<const std::uint8_t> Read(long long begin, long long count);

private:
    std::FILE* m_file;
    long long m_offset; // of the samples, bytes
    std::size_t m_frameBytes;
    long long m_count;
    long long m_mostFrames;
    std::vector<std::uint8_t> m_window;
    long long m_begin = 0; // of the window, sample frames
    long long m_end = 0;
};
