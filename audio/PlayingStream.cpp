#include "audio/PlayingStream.h"

#include "audio/ChannelFold.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::int64_t kChunkSampleFrames = 2048;

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

/// Has the stopped device play from here.
void PlayingStream::BeginAt(std::int64_t sampleFrame) {
    m_decoder->Seek(sampleFrame);
    m_queue.Restart(sampleFrame);
    // 100 ms: a thread that begins late leaves no gap. The rest is queued meanwhile.
    const std::int64_t enough = m_queue.Room() - Format().rateHz / 10;
    while (m_queue.Room() > enough && PushNext()) {
    }
    m_device->Start(m_queue);
    m_queue.Wake();
}

/// Lets go of the stopped device.
void PlayingStream::Halt(std::int64_t position) {
    m_output.Release(std::move(m_device));
    m_position = position;
}

/// Decodes some more into the queue.
/// @return false when there is nothing more
bool PlayingStream::PushNext() {
    auto samples = m_decoder->Read(kChunkSampleFrames);
    if (samples.empty()) {
        m_queue.MarkEnd();
        return false;
    }
    if (PlayedChannels(Format().channels) != Format().channels) {
        FoldToStereo(samples, Format().channels, m_folded);
        samples = m_folded;
    }
    m_queue.Push(samples);
    return true;
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
        const std::lock_guard lock(m_mutex);
        if (m_closed) {
            return false;
        }
        if (!m_device) {
            continue;
        }
        if (m_queue.Drained()) {
            m_device->Stop();
            Halt(Format().sampleFrames);
            return true;
        }
        while (m_queue.Room() >= kChunkSampleFrames && PushNext()) {
        }
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
