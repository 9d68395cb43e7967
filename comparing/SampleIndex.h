#pragma once

#include <cstdint>
#include <span>
#include <vector>

class SampleReader;

/// The hash of so many sample frames in a row, which can go on by a sample frame at a time.
class RollingHash {
public:
    /// @param frames      how many
    /// @param frameBytes  of a sample frame
    RollingHash(std::size_t frames, std::size_t frameBytes);

    void Restart() { m_taken = 0, m_hash = 0; }
    /// Takes the next sample frame, and lets go of the one so many before it.
    void Take(const std::uint8_t* frame);
    bool IsFull() const { return m_taken >= m_values.size(); }
    std::uint64_t Get() const { return m_hash; }

private:
    std::size_t m_frameBytes;
    std::vector<std::uint64_t> m_values; // of the sample frames that the hash is of, in a circle
    std::size_t m_taken = 0;
    std::uint64_t m_hash = 0;
    std::uint64_t m_highest = 1; // what the value that goes counts for
};

/// Where in a file blocks of sample frames are, by their hash.
class SampleIndex {
public:
    explicit SampleIndex(SampleReader& source);

    /// Sample frames in a block.
    long long Block() const { return m_block; }
    struct Entry {
        std::uint64_t hash;
        std::uint64_t block;
        friend auto operator<=>(const Entry&, const Entry&) = default;
    };
    /// The blocks that have this hash, ascending by their number.
    std::span<const Entry> Find(std::uint64_t hash) const;

private:
    static constexpr unsigned int kSieveBits = 25;
    static std::size_t SieveIndex(std::uint64_t hash) { return hash >> (64 - kSieveBits); }

    long long m_block;
    std::vector<Entry> m_entries;
    std::vector<bool> m_sieve; // whether a hash that begins so is there at all
};
