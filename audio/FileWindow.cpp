#include "audio/FileWindow.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace {

constexpr std::int64_t kPageBytes = 4096;

} // namespace

FileWindow::FileWindow(std::shared_ptr<const File> file)
    : m_file(std::move(file)),
      m_buffer(std::make_unique_for_overwrite<std::uint8_t[]>(kCapacityBytes)) {
}

const std::uint8_t* FileWindow::Refill(std::int64_t offset, std::size_t count) {
    assert(count <= kCapacityBytes / 16);
    const std::int64_t size = m_file->State().sizeBytes;
    if (offset < 0 || offset > size || static_cast<std::int64_t>(count) > size - offset) {
        return nullptr;
    }
    // Aligned, and from a page earlier: who looked a frame ahead and returns finds its place
    // inside.
    m_begin = std::max(offset / kPageBytes - 1, std::int64_t{0}) * kPageBytes;
    m_end = m_begin +
            static_cast<std::int64_t>(m_file->ReadAt(m_begin, m_buffer.get(), kCapacityBytes));
    if (offset + static_cast<std::int64_t>(count) > m_end) {
        return nullptr;
    }
    return m_buffer.get() + (offset - m_begin);
}
