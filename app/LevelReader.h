#pragma once

#include "engine/BlockReader.h"

#include <QObject>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <vector>

/// Reads the levels of a file on a thread of its own: at once where they are known, otherwise as
/// fast as the file is decoded.
class LevelReader : public QObject {
    Q_OBJECT

public:
    LevelReader() = default;
    LevelReader(const LevelReader&) = delete;
    LevelReader& operator=(const LevelReader&) = delete;
    ~LevelReader() override; ///< waits for the thread

    /// Begins with a file; what is read of another one is given up.
    void Start(const std::string& path);
    void Stop(); ///< waits for nothing

Q_SIGNALS:
    void progressed(int percent);
    /// All is read; of a file that cannot be opened, nothing.
    void finished(const std::vector<Block>& blocks, unsigned long long length);

private:
    struct Job {
        std::thread thread;
        std::atomic<bool> isStopped{false}; // main -> reader
        std::atomic<bool> isDone{false};    // reader -> main: joining it takes no time
    };

    void Read(const std::shared_ptr<Job>& job, const std::string& path);
    void Report(const std::shared_ptr<Job>& job, int percent);

    std::vector<std::shared_ptr<Job>> m_jobs; // the last one is not stopped yet; others end soon
};
