#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

/// Shows on standard error how far a piece of work is, from half a second after its begin until
/// this goes, which wipes the line. Silent where standard error is no terminal.
class Progress {
public:
    /// @param describe  the line to show now; called on a thread of its own
    explicit Progress(std::function<std::string()> describe);
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress();

private:
    void Show(const std::stop_token& stop);

    std::function<std::string()> m_describe;
    std::mutex m_mutex;
    std::condition_variable_any m_stopped;
    std::jthread m_thread; // last: it uses the others
};
