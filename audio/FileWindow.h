#pragma once

#include "audio/File.h"

#include <cstdint>
#include <memory>
#include <optional>

/// A file seen through a large buffer, for a reader that moves mostly forwards in small steps.
///
/// One thread at a time.
class FileWindow {
public:
    // Few enough to stay in the processor's cache until they are looked at: a walk over a file's
    // headers takes a quarter less time than with 256 KiB.
    static constexpr std::size_t kCapacityBytes = std::size_t{96} * 1024;

    explicit FileWindow(std::shared_ptr<const File> file);

    /// The bytes [offset, offset + count), which stay valid until the next call.
    /// @param count  at most a sixteenth of the capacity
    /// @return null where the file does not hold all of them
    [[nodiscard]] const std::uint8_t* Bytes(std::int64_t offset, std::size_t count) {
        if (offset >= m_begin && offset + static_cast<std::int64_t>(count) <= m_end) {
            return m_buffer.get() + (offset - m_begin);
        }
        return Refill(offset, count);
    }

    const File& Source() const { return *m_file; }

    /// The last bytes asked for that the file should hold and that could not be read since the
    /// last call of ForgetError; those who ask again are refused without another try.
    const std::optional<ReadError>& Error() const { return m_error; }
    /// What could not be read may be tried again.
    void ForgetError();

private:
    [[nodiscard]] const std::uint8_t* Refill(std::int64_t offset, std::size_t count);

    std::shared_ptr<const File> m_file;
    std::unique_ptr<std::uint8_t[]> m_buffer;
    std::int64_t m_begin = 0; // offset in the file of the buffer's first byte
    std::int64_t m_end = 0;   // and of the byte after its last

    std::optional<ReadError> m_error;
    std::int64_t m_unreadableEnd = 0; // of the page that could not be read
};
