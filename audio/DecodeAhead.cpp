#include "audio/DecodeAhead.h"

#include <algorithm>
#include <functional>
#include <new>
#include <system_error>
#include <utility>

namespace {

constexpr std::int64_t kAtOnceSampleFrames = 2048;

} // namespace

DecodeAhead::DecodeAhead(const Mp3File& mp3, unsigned threads)
    : m_mp3(mp3), m_format(mp3.Format()), m_threadLimit(threads),
      m_windowBlocks(std::int64_t{threads} + 2), m_random(mp3) {
    Allocate();
}

DecodeAhead::~DecodeAhead() {
    {
        const std::lock_guard lock(m_mutex);
        m_quit = true;
        ++m_round;
    }
    m_wanted.notify_all();
    for (std::thread& thread : m_threads) {
        thread.join();
    }
}

std::unique_ptr<Decoder> DecodeAhead::ForRandomAccess() const {
    return std::make_unique<Mp3Decoder>(m_mp3);
}

void DecodeAhead::Seek(std::int64_t sampleFrame) {
    m_position = sampleFrame;
    m_atOnceLeft = kAtOnceSampleFrames;
}

std::span<const std::int16_t> DecodeAhead::Read(std::int64_t maxSampleFrames) {
    if (m_position >= m_format.sampleFrames) {
        return {};
    }
    const std::int64_t blockSampleFrames = m_mp3.BlockSampleFrames();
    if (!IsThreadsTurn(m_position / blockSampleFrames)) {
        return ReadAtOnce(maxSampleFrames);
    }
    AwaitBlock(m_position / blockSampleFrames);
    const std::int64_t skipped = m_position % blockSampleFrames;
    const std::int64_t count = std::min(
        {maxSampleFrames, blockSampleFrames - skipped, m_format.sampleFrames - m_position});
    m_position += count;
    return {m_samples.get() + skipped * m_format.channels,
            static_cast<std::size_t>(count * m_format.channels)};
}

/// Whether the threads' work is at this block, or is to be from now on.
bool DecodeAhead::IsThreadsTurn(std::int64_t block) const {
    return m_atOnceLeft == 0 || (m_block >= 0 && (block == m_block || block == m_block + 1));
}

std::span<const std::int16_t> DecodeAhead::ReadAtOnce(std::int64_t maxSampleFrames) {
    m_random.Seek(m_position);
    const auto samples = m_random.Read(std::min(maxSampleFrames, m_atOnceLeft));
    const std::int64_t count = static_cast<std::int64_t>(samples.size()) / m_format.channels;
    m_position += count;
    m_atOnceLeft -= count;
    return samples;
}

/// Makes m_samples those of the block.
void DecodeAhead::AwaitBlock(std::int64_t block) {
    if (block == m_block) {
        return;
    }
    std::unique_lock lock(m_mutex);
    if (m_samples) {
        m_free.push_back(std::move(m_samples));
    }
    if (m_block < 0 || block != m_block + 1) {
        ++m_round;
        for (DecodedBlock& decoded : m_ready) {
            m_free.push_back(std::move(decoded.samples));
        }
        m_ready.clear();
        m_nextBlock = block;
    }
    m_block = -1;
    m_readBlock = block;
    StartThreads();
    if (m_threads.empty()) {
        m_nextBlock = block + 1;
        m_samples = TakeFree();
        DecodeBlock(*m_decoders.front(), block, m_round, m_samples.get());
    } else {
        m_wanted.notify_all();
        m_finished.wait(lock, [&] { return (m_samples = TakeReady(block)) != nullptr; });
    }
    m_block = block;
}

void DecodeAhead::Allocate() {
    // A thread may still be writing to a buffer for an earlier position while the window is full.
    const std::size_t buffers = static_cast<std::size_t>(m_windowBlocks) + m_threadLimit;
    const auto samples = static_cast<std::size_t>(m_mp3.BlockSampleFrames() * m_format.channels);
    m_free.reserve(buffers);
    m_ready.reserve(buffers);
    m_threads.reserve(m_threadLimit);
    while (m_free.size() < buffers) {
        m_free.push_back(MakePageArray<std::int16_t>(samples));
        if (m_free.back() == nullptr) {
            throw std::bad_alloc();
        }
    }
    while (m_decoders.size() < m_threadLimit) {
        m_decoders.push_back(std::make_unique<BlockDecoder>(m_mp3.file, m_mp3.index));
    }
}

/// Starts as many threads as can be had. Where there is none the reader's thread decodes.
void DecodeAhead::StartThreads() {
    if (!m_threads.empty()) {
        return;
    }
    try {
        for (const auto& decoder : m_decoders) {
            m_threads.emplace_back(&DecodeAhead::Work, this, std::ref(*decoder));
        }
    } catch (const std::system_error&) {
        // The system has no more.
        return;
    }
}

/// A thread's life.
void DecodeAhead::Work(BlockDecoder& decoder) {
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_wanted.wait(lock, [&] { return m_quit || HasWork(); });
        if (m_quit) {
            return;
        }
        const std::int64_t block = m_nextBlock++;
        const unsigned round = m_round;
        Samples samples = TakeFree();
        lock.unlock();
        const bool finished = DecodeBlock(decoder, block, round, samples.get());
        lock.lock();
        if (finished && round == m_round) {
            m_ready.push_back({block, std::move(samples)});
            m_finished.notify_one();
        } else {
            m_free.push_back(std::move(samples));
        }
    }
}

bool DecodeAhead::HasWork() const {
    return m_nextBlock < std::min(m_readBlock + m_windowBlocks,
                                  static_cast<std::int64_t>(m_mp3.index->Blocks().size()));
}

DecodeAhead::Samples DecodeAhead::TakeFree() {
    Samples samples = std::move(m_free.back());
    m_free.pop_back();
    return samples;
}

/// @return null when the block has not been decoded yet
DecodeAhead::Samples DecodeAhead::TakeReady(std::int64_t block) {
    const auto found = std::find_if(m_ready.begin(), m_ready.end(),
                                    [&](const auto& decoded) { return decoded.block == block; });
    if (found == m_ready.end()) {
        return nullptr;
    }
    Samples samples = std::move(found->samples);
    m_ready.erase(found);
    return samples;
}

/// @return false when it was given up because of a seek
bool DecodeAhead::DecodeBlock(BlockDecoder& decoder, std::int64_t block, unsigned round,
                              std::int16_t* samples) const {
    decoder.Begin(block);
    const std::int64_t frames = m_mp3.index->FramesOfBlock(block);
    for (std::int64_t frame = 0; frame < frames; ++frame) {
        if (m_round.load(std::memory_order_relaxed) != round) {
            return false;
        }
        decoder.DecodeFrame(samples);
        samples += decoder.SamplesPerFrame();
    }
    return true;
}
