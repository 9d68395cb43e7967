#pragma once

#include "audio/Output.h"
#include "audio/PlaybackQueue.h"
#include "audio/Stream.h"

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

/// A stream that is heard.
///
/// Once played it has a thread of its own, which alone reads and decodes: it feeds the queue, has
/// the device start when there is enough in it, and calls the end callbacks. No call but Close
/// waits for a read.
class PlayingStream : public Stream, public std::enable_shared_from_this<PlayingStream> {
public:
    /// @param output  only referred to
    PlayingStream(std::unique_ptr<Decoder> decoder, Output& output);

    std::int64_t Position() override;
    bool SetPosition(std::int64_t sampleFrame) override;
    bool IsActive() override;
    std::vector<std::int64_t> SeekInfo() const override { return m_decoder->SeekInfo(); }
    std::optional<ReadFailure> Failure() const override { return m_decoder->Failure(); }
    bool Play(bool restart) override;
    bool Stop() override;
    bool AddEndCallback(const std::function<void()>& callback) override;
    void Close() override;

private:
    using Clock = std::chrono::steady_clock;
    using Lock = std::unique_lock<std::mutex>;

    void BeginAt(std::int64_t sampleFrame);
    void Halt(std::int64_t position);
    void Run();
    [[nodiscard]] bool FeedUntilEnd();
    void FillQueue(Lock& lock);
    std::span<const std::int16_t> Decode(std::int64_t seekTo);
    void TryLostDevice(Lock& lock);
    void CallEndCallbacks();

    Output& m_output;
    PlaybackQueue m_queue;

    // the stream's own thread
    const std::unique_ptr<Decoder> m_decoder;
    std::vector<std::int16_t> m_folded; // samples on their way to fewer channels

    // under the mutex, which is held for moments only
    std::mutex m_mutex;
    std::unique_ptr<OutputDevice> m_device; // while playing
    bool m_isStarted = false;               // the device takes samples
    unsigned m_turn = 0;                    // counts up whenever what was read becomes useless
    std::int64_t m_seekTo = -1;             // where the thread is to read next; -1: where it is
    std::int64_t m_position = 0;            // while not playing
    Clock::time_point m_nextTry;            // to find another device for one that was lost
    bool m_closed = false;
    std::deque<std::function<void()>> m_endCallbacks; // grows only, so that references hold
    std::thread m_thread;
};
