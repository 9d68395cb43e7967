#include "comparing/SampleIndex.h"

#include "comparing/Hash.h"
#include "comparing/SampleReader.h"

#include <algorithm>
#include <bit>

namespace {

constexpr std::uint64_t kBase = 0x9E3779B97F4A7C15; // odd, its bits evenly mixed

// Short ones for short files, so that short stretches are found; in long ones an entry each of
// those would be too many.
long long BlockFor(const SampleReader& source) {
    constexpr std::uint64_t kLeast = 16;
    constexpr std::uint64_t kMost = 1024;
    constexpr long long kEntries = 4096;
    return static_cast<long long>(
        std::clamp(std::bit_floor(static_cast<std::uint64_t>(source.Count() / kEntries)), kLeast,
                   std::min(kMost, static_cast<std::uint64_t>(source.MostFrames()))));
}

} // namespace

RollingHash::RollingHash(std::size_t frames, std::size_t frameBytes)
    : m_frameBytes(frameBytes), m_values(frames) {
    for (std::size_t i = 0; i < frames; ++i) {
        m_highest *= kBase;
    }
}

void RollingHash::Take(const std::uint8_t* frame) {
    const std::uint64_t value = HashOf({frame, m_frameBytes});
    std::uint64_t& oldest = m_values[m_taken % m_values.size()];
    m_hash = m_hash * kBase + value - (IsFull() ? oldest * m_highest : 0);
    oldest = value;
    ++m_taken;
}

SampleIndex::SampleIndex(SampleReader& source)
    : m_block(BlockFor(source)), m_sieve(std::size_t{1} << kSieveBits) {
    RollingHash hash(static_cast<std::size_t>(m_block), source.FrameBytes());
    const long long blocks = source.Count() / m_block;
    m_entries.reserve(static_cast<std::size_t>(blocks));
    for (long long block = 0; block < blocks; ++block) {
        const auto bytes = source.Read(block * m_block, m_block);
        hash.Restart();
        for (std::size_t i = 0; i < bytes.size(); i += source.FrameBytes()) {
            hash.Take(&bytes[i]);
        }
        m_entries.push_back({hash.Get(), static_cast<std::uint64_t>(block)});
        m_sieve[SieveIndex(hash.Get())] = true;
    }
    std::ranges::sort(m_entries);
}

std::span<const SampleIndex::Entry> SampleIndex::Find(std::uint64_t hash) const {
    if (!m_sieve[SieveIndex(hash)]) {
        return {};
    }
    return {std::ranges::lower_bound(m_entries, hash, {}, &Entry::hash),
            std::ranges::upper_bound(m_entries, hash, {}, &Entry::hash)};
}
