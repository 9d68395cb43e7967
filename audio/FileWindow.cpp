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

void FileWindow::ForgetError() {
    m_error.reset();
}

const std::uint8_t* FileWindow::Refill(std::int64_t offset, std::size_t count) {
    assert(count <= kCapacityBytes / 16);
    const std::int64_t size = m_file->State().sizeBytes;
    const std::int64_t end = offset + static_cast<std::int64_t>(count);
    if (offset < 0 || offset > size || end > size) {
        return nullptr;
    }
    // A disk that fails takes its time for it: a page is tried once, however many of its bytes a
    // search asks for.
    if (m_error && offset < m_unreadableEnd && end > m_error->offsetBytes) {
        return nullptr;
    }
    // Aligned, and from a page earlier: who looked a frame ahead and returns finds its place
    // inside.
    m_begin = std::max(offset / kPageBytes - 1, std::int64_t{0}) * kPageBytes;
    if (m_error && offset >= m_unreadableEnd) {
        m_begin = std::max(m_begin, m_unreadableEnd);
    }
    const auto read = m_file->ReadAt(m_begin, m_buffer.get(), kCapacityBytes);
    m_end = m_begin + static_cast<std::int64_t>(read.bytes);
    if (end > m_end) {
        m_error = ReadError{m_end, read.error};
        m_unreadableEnd = read.error != 0 ? (m_end / kPageBytes + 1) * kPageBytes : size;
        return nullptr;
    }
    return m_buffer.get() + (offset - m_begin);
}
