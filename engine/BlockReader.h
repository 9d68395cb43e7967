#pragma once

#include <cstdint>
#include <string>

/// The levels of 20 ms of audio.
struct Block {
    unsigned long long position = 0; ///< where it begins, bytes of the decoded stream
    float levels[2] = {};            ///< largest sample of the left and the right side, 0 to 1
};

/// Reads the levels of a file block by block, on a stream of its own.
class BlockReader {
public:
    static constexpr float kBlockSeconds = 0.02F;

    /// A file that cannot be opened has no blocks.
    explicit BlockReader(const std::string& path);
    BlockReader(const BlockReader&) = delete;
    BlockReader& operator=(const BlockReader&) = delete;
    ~BlockReader();

    /// @return false when the stream ended before or within the block
    bool Read(Block& block) const;

    /// Of the whole stream, bytes; 0 of a file that cannot be opened.
    unsigned long long GetLength() const;
    /// The audio library's handle of the stream; 0 for none.
    std::uint32_t GetStream() const { return m_stream; }

private:
    const std::uint32_t m_stream;
};
