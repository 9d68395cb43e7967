#pragma once

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <sys/types.h>
#include <thread>

/// Has what is being written to files go out to the disk at once, on a thread of its own, so that
/// little is left to wait for when they are complete. Any thread.
class WriteThrough {
public:
    /// The one of this process, whose thread ends with the last that has it.
    static std::shared_ptr<WriteThrough> OfProcess();

    WriteThrough();
    WriteThrough(const WriteThrough&) = delete;
    WriteThrough& operator=(const WriteThrough&) = delete;
    ~WriteThrough() = default;

    /// @param descriptor  of a file that only grows; stays open until Remove
    void Add(int descriptor);
    /// Nothing for one that was not added.
    void Remove(int descriptor);

private:
    void Run(const std::stop_token& stop);

    std::mutex m_mutex;
    std::map<int, off_t> m_sentBytes; // by descriptor
    std::condition_variable_any m_stopped;
    std::jthread m_thread; // last: it uses the others
};
