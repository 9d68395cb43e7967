#include "app/LevelReader.h"

#include <QMetaObject>

LevelReader::~LevelReader() {
    Stop();
    for (const auto& job : m_jobs) {
        job->thread.join();
    }
}

void LevelReader::Stop() {
    if (!m_jobs.empty()) {
        m_jobs.back()->isStopped = true;
    }
}

void LevelReader::Start(const std::string& path) {
    Stop();
    std::erase_if(m_jobs, [](const std::shared_ptr<Job>& job) {
        const bool isDone = job->isDone;
        if (isDone) {
            job->thread.join();
        }
        return isDone;
    });
    const auto& job = m_jobs.emplace_back(std::make_shared<Job>());
    job->thread = std::thread([this, job, path] {
        Read(job, path);
        job->isDone = true;
    });
}

void LevelReader::Read(const std::shared_ptr<Job>& job, const std::string& path) {
    const BlockReader reader(path);
    const unsigned long long length = reader.GetLength();
    const auto blocks = std::make_shared<std::vector<Block>>();
    int told = 0;
    for (Block block; !job->isStopped && reader.Read(block);) {
        blocks->push_back(block);
        constexpr unsigned long long kPercent = 100;
        const int percent = static_cast<int>(block.position * kPercent / length);
        if (percent != told) {
            told = percent;
            Report(job, percent);
        }
    }
    QMetaObject::invokeMethod(
        this,
        [this, job, blocks, length] {
            if (!job->isStopped) {
                Q_EMIT finished(*blocks, length);
            }
        },
        Qt::QueuedConnection);
}

void LevelReader::Report(const std::shared_ptr<Job>& job, int percent) {
    QMetaObject::invokeMethod(
        this,
        [this, job, percent] {
            if (!job->isStopped) {
                Q_EMIT progressed(percent);
            }
        },
        Qt::QueuedConnection);
}
