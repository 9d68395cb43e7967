#include "audio/PlayingStream.h"

#include "audio/ChannelFold.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::int64_t kChunkSampleFrames = 2048;
constexpr std::chrono::seconds kTryEvery{1}; // when a device is lost

OutputFormat PlayedFormat(const AudioFormat& format) {
    return {format.rateHz, PlayedChannels(format.channels)};
}

} // namespace

PlayingStream::PlayingStream(std::unique_ptr<Decoder> decoder, Output& output)
    : Stream(decoder->Format()), m_output(output), m_queue(PlayedFormat(decoder->Format())),
      m_decoder(std::move(decoder)) {
    m_folded.reserve(2 * kChunkSampleFrames);
}

std::int64_t PlayingStream::Position() {
    const std::lock_guard lock(m_mutex);
    return m_device ? m_queue.Heard() : m_position;
}

bool PlayingStream::SetPosition(std::int64_t sampleFrame) {
    const std::lock_guard lock(m_mutex);
    if (m_closed) {
        return false;
    }
    if (m_device) {
        m_device->Stop();
        BeginAt(sampleFrame);
    }
    m_position = sampleFrame;
    return true;
}

bool PlayingStream::IsActive() {
    const std::lock_guard lock(m_mutex);
    return m_device != nullptr;
}

bool PlayingStream::Play(bool restart) {
    const std::lock_guard lock(m_mutex);
    if (m_closed) {
        return false;
    }
    if (m_device) {
        if (restart) {
            m_device->Stop();
            BeginAt(0);
        }
        return true;
    }
    if (!m_thread.joinable()) {
        m_thread = std::thread([self = shared_from_this()] { self->Run(); });
    }
    m_device = m_output.Acquire(PlayedFormat(Format()));
    m_nextTry = Clock::now() + kTryEvery;
    BeginAt(restart || m_position >= Format().sampleFrames ? 0 : m_position);
    return true;
}

bool PlayingStream::Stop() {
    const std::lock_guard lock(m_mutex);
    if (m_closed) {
        return false;
    }
    if (m_device) {
        m_device->Stop();
        // What was handed out is still heard.
        Halt(m_queue.Taken());
    }
    return true;
}

bool PlayingStream::AddEndCallback(const std::function<void()>& callback) {
    const std::lock_guard lock(m_mutex);
    if (m_closed) {
        return false;
    }
    m_endCallbacks.push_back(callback);
    return true;
}

void PlayingStream::Close() {
    std::thread thread;
    {
        const std::lock_guard lock(m_mutex);
        m_closed = true;
        if (m_device) {
            m_device->Stop();
            Halt(m_position);
        }
        thread = std::move(m_thread);
    }
    m_queue.Wake();
    if (thread.get_id() == std::this_thread::get_id()) {
        thread.detach(); // it ends after the callback that this is called from
    } else if (thread.joinable()) {
        thread.join();
    }
}

/// Has the stopped device play from here, as soon as there is something to play.
void PlayingStream::BeginAt(std::int64_t sampleFrame) {
    m_queue.Restart(sampleFrame);
    m_isStarted = false;
    m_seekTo = sampleFrame;
    ++m_turn;
    m_queue.Wake();
}

/// Lets go of the stopped device.
void PlayingStream::Halt(std::int64_t position) {
    ++m_turn;
    m_position = position;
    m_output.Release(std::move(m_device));
}

/// The thread's life.
void PlayingStream::Run() {
    while (FeedUntilEnd()) {
        CallEndCallbacks();
    }
}

/// @return false when the stream was closed
bool PlayingStream::FeedUntilEnd() {
    for (;;) {
        m_queue.Await();
        Lock lock(m_mutex);
        if (m_closed) {
            return false;
        }
        if (m_device && m_queue.Drained()) {
            m_device->Stop();
            Halt(Format().sampleFrames);
            return true;
        }
        FillQueue(lock);
        TryLostDevice(lock);
    }
}

/// Decodes, while playing, until the queue is full or the end is in it.
void PlayingStream::FillQueue(Lock& lock) {
    // 100 ms: a thread that begins late leaves no gap. The rest is queued meanwhile.
    const std::int64_t enough = m_queue.Capacity() - Format().rateHz / 10;
    while (m_device && !m_closed && !m_queue.Ended() && m_queue.Room() >= kChunkSampleFrames) {
        const unsigned turn = m_turn;
        const std::int64_t seekTo = std::exchange(m_seekTo, -1);
        lock.unlock();
        const auto samples = Decode(seekTo);
        lock.lock();
        if (turn != m_turn) {
            continue;
        }
        samples.empty() ? m_queue.MarkEnd() : m_queue.Push(samples);
        if (!m_isStarted && (samples.empty() || m_queue.Room() <= enough)) {
            m_device->Start(m_queue);
            m_isStarted = true;
        }
    }
}

/// The next samples as they are played; none at the end.
/// @param seekTo  -1: those after the last ones
std::span<const std::int16_t> PlayingStream::Decode(std::int64_t seekTo) {
    if (seekTo >= 0) {
        m_decoder->Seek(seekTo);
    }
    const auto samples = m_decoder->Read(kChunkSampleFrames);
    if (PlayedChannels(Format().channels) == Format().channels) {
        return samples;
    }
    FoldToStereo(samples, Format().channels, m_folded);
    return m_folded;
}

/// Once a second looks for another device where the one that plays cannot be heard.
void PlayingStream::TryLostDevice(Lock& lock) {
    if (!m_device || m_device->IsAudible() || Clock::now() < m_nextTry) {
        return;
    }
    lock.unlock();
    auto device = m_output.AcquireAudible(PlayedFormat(Format()));
    lock.lock();
    m_nextTry = Clock::now() + kTryEvery;
    if (device && m_device) {
        m_device->Stop();
        m_device.swap(device);
        if (m_isStarted) {
            m_device->Start(m_queue);
        }
    }
    lock.unlock();
    if (device) {
        m_output.Release(std::move(device));
    }
}

void PlayingStream::CallEndCallbacks() {
    std::unique_lock lock(m_mutex);
    const std::size_t count = m_endCallbacks.size();
    // Who plays the stream again must not be told afterwards that it has stopped.
    for (std::size_t i = 0; i < count && !m_closed && !m_device; ++i) {
        const auto& callback = m_endCallbacks[i];
        lock.unlock();
        callback();
        lock.lock();
    }
}
