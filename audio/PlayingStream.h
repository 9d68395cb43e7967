#pragma once

#include "audio/Output.h"
#include "audio/PlaybackQueue.h"
#include "audio/Stream.h"

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

/// A stream that is heard.
///
/// Once played it has a thread of its own, which feeds the queue and calls the end callbacks.
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
    void BeginAt(std::int64_t sampleFrame);
    void Halt(std::int64_t position);
    bool PushNext();
    void Run();
    bool FeedUntilEnd();
    void CallEndCallbacks();

    Output& m_output;
    PlaybackQueue m_queue;

    // under the mutex
    std::mutex m_mutex;
    const std::unique_ptr<Decoder> m_decoder;
    std::vector<std::int16_t> m_folded;     // samples on their way to fewer channels
    std::unique_ptr<OutputDevice> m_device; // while playing
    std::int64_t m_position = 0;            // while not playing
    bool m_closed = false;
    std::deque<std::function<void()>> m_endCallbacks; // grows only, so that references hold
    std::thread m_thread;
};
