#pragma once

#include "audio/BlockDecoder.h"
#include "audio/Decoder.h"
#include "audio/Mp3Decoder.h"
#include "audio/Mp3File.h"
#include "platform/PageArray.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

/// Decodes MPEG audio ahead of the reader on several threads, a block each at a time.
///
/// What is read first after a seek to somewhere else is decoded by the reader's thread: who wants a
/// moment of sound does not have all processors decode seconds of it.
///
/// The threads start with the first Read beyond that and end with the object; all that they need is
/// made with it, so that nothing can fail later. No more than two blocks beyond one per thread are
/// kept.
class DecodeAhead : public Decoder {
public:
    /// @param threads  at least 1
    /// @throws std::bad_alloc when there is too little memory
    DecodeAhead(const Mp3File& mp3, unsigned threads);
    ~DecodeAhead() override;
    DecodeAhead(const DecodeAhead&) = delete;
    DecodeAhead& operator=(const DecodeAhead&) = delete;

    const AudioFormat& Format() const override { return m_format; }
    void Seek(std::int64_t sampleFrame) override;
    std::span<const std::int16_t> Read(std::int64_t maxSampleFrames) override;
    std::unique_ptr<Decoder> ForRandomAccess() const override;
    SeekCost CostOfSeeking() const override { return SeekCost::High; }
    std::vector<std::int64_t> SeekInfo() const override { return m_mp3.SeekInfo(); }
    std::optional<ReadFailure> Failure() const override { return m_mp3.file->Failures().First(); }

private:
    using Samples = PageArray<std::int16_t>;
    struct DecodedBlock {
        std::int64_t block;
        Samples samples;
    };

    void Allocate();
    void StartThreads();
    bool IsThreadsTurn(std::int64_t block) const;
    std::span<const std::int16_t> ReadAtOnce(std::int64_t maxSampleFrames);
    void AwaitBlock(std::int64_t block);
    void Work(BlockDecoder& decoder);
    bool HasWork() const;
    Samples TakeFree();
    Samples TakeReady(std::int64_t block);
    bool DecodeBlock(BlockDecoder& decoder, std::int64_t block, unsigned round,
                     std::int16_t* samples) const;

    // reader's thread
    Mp3File m_mp3;
    AudioFormat m_format;
    const std::size_t m_threadLimit;
    const std::int64_t m_windowBlocks; // how many are kept or in work, from the one being read on
    std::vector<std::unique_ptr<BlockDecoder>> m_decoders; // one per thread
    std::vector<std::thread> m_threads;
    Mp3Decoder m_random;           // for what is read first after a seek
    std::int64_t m_atOnceLeft = 0; // how many sample frames that still is
    std::int64_t m_position = 0;   // in sample frames
    std::int64_t m_block = -1;     // the block being read; -1 for none
    Samples m_samples;             // its samples

    // shared: under the mutex
    std::mutex m_mutex;
    std::condition_variable m_finished; // a block was decoded
    std::condition_variable m_wanted;   // a block may be decoded, or the threads are to end
    std::vector<DecodedBlock> m_ready;
    std::vector<Samples> m_free;
    std::int64_t m_readBlock = 0; // the block that the reader reads or waits for
    std::int64_t m_nextBlock = 0; // the block to be begun next
    bool m_quit = false;

    // shared: atomic, written under the mutex too. Counts the seeks: a thread gives up its block
    // once this has changed since it began.
    std::atomic<unsigned> m_round{0};
};
