#include "comparing/SampleReader.h"

#include <algorithm>
#include <cerrno>
#include <system_error>

namespace {

// A mebibyte of samples, as far as a sample frame is of a usual size: a header may claim any.
long long FramesInWindow(std::size_t frameBytes) {
    constexpr std::size_t kBytes = 1 << 20;
    constexpr std::size_t kLeast = 64;
    constexpr std::size_t kMost = 1 << 14;
    return static_cast<long long>(std::clamp(kBytes / frameBytes, kLeast, kMost));
}

} // namespace

SampleReader::SampleReader(std::FILE* file, const WholeWAVLayout& layout)
    : m_file(file), m_offset(layout.Data().Payload()), m_frameBytes(layout.blockAlign),
      m_count(layout.SampleFrames()), m_mostFrames(FramesInWindow(layout.blockAlign)),
      m_window(static_cast<std::size_t>(2 * m_mostFrames) * m_frameBytes) {
}

std::span<const std::uint8_t> SampleReader::Read(long long begin, long long count) {
    if (begin < m_begin || begin + count > m_end) {
        // Joins are followed in both directions.
        m_begin = begin < m_begin ? std::max(0LL, begin + count - 2 * m_mostFrames) : begin;
        m_end = std::min(m_count, m_begin + 2 * m_mostFrames);
        const auto bytes = static_cast<std::size_t>(m_end - m_begin) * m_frameBytes;
        errno = 0;
        if (fseeko(m_file, m_offset + m_begin * static_cast<long long>(m_frameBytes), SEEK_SET) !=
                0 ||
            std::fread(m_window.data(), 1, bytes, m_file) != bytes) {
            m_end = m_begin;
            throw std::system_error(errno != 0 ? errno : EIO, std::generic_category());
        }
    }
    return std::span<const std::uint8_t>(m_window).subspan(
        static_cast<std::size_t>(begin - m_begin) * m_frameBytes,
        static_cast<std::size_t>(count) * m_frameBytes);
}
