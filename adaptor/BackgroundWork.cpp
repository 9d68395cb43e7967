#include "adaptor/BackgroundWork.h"

#include <system_error>
#include <utility>

BackgroundWork::BackgroundWork(std::function<void()> work) {
    try {
        m_thread = std::thread(&BackgroundWork::Run, this, work);
    } catch (const std::system_error&) {
        Run(work);
    }
}

BackgroundWork::~BackgroundWork() {
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void BackgroundWork::WhenDone(std::function<void()> tell) {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_isDone) {
            m_tell = std::move(tell);
            return;
        }
    }
    tell();
}

void BackgroundWork::Run(const std::function<void()>& work) {
    work();
    const std::lock_guard lock(m_mutex);
    m_isDone = true;
    m_isDone.notify_all();
    if (m_tell) {
        m_tell();
    }
}
