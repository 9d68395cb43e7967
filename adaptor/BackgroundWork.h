#pragma once

#include "cutting/CutProgress.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

/// Work on a thread of its own, which another thread watches and may cancel.
class BackgroundWork {
public:
    /// Begins at once; where the system has no more threads, the work is done before this returns.
    explicit BackgroundWork(std::function<void()> work);
    BackgroundWork(const BackgroundWork&) = delete;
    BackgroundWork& operator=(const BackgroundWork&) = delete;
    ~BackgroundWork(); ///< returns when the work is done

    // Any thread.

    bool IsDone() const { return m_isDone; }
    void Wait() const { m_isDone.wait(false); } ///< until it is done
    /// Asks the work to end early; nothing when it is done, or past the point of no return.
    void Cancel() { m_progress.isCancelled = true; }
    bool IsCancelled() const { return m_progress.isCancelled; }
    /// How far it is; bytes. Both 0 until it knows how much there is to do.
    long long GetBytesDone() const { return m_progress.bytesDone; }
    long long GetBytesInAll() const { return m_progress.bytesInAll; }

    /// Has something called once when the work is done: on its thread, or at once when it is done
    /// already. What is called must not wait for the work.
    void WhenDone(std::function<void()> tell);

private:
    void Run(const std::function<void()>& work);

    CutProgress m_progress;
    const CutProgressScope m_progressScope{m_progress};
    std::mutex m_mutex;
    std::function<void()> m_tell;      // under the mutex
    std::atomic<bool> m_isDone{false}; // worker -> any: publishes all that the work has done
    std::thread m_thread;              // last: it uses the others
};
