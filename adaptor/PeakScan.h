#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

/// What becomes of the levels that a scan measures. Called on the scan's thread, or in Start when
/// there is nothing to scan.
class PeakSink {
public:
    virtual ~PeakSink() = default;

    /// The next column's peaks of the left and the right side, 0 to 1.
    virtual void AddColumn(float left, float right) = 0;
    /// No column follows: all were measured, or the audio has ended.
    virtual void FinishColumns() = 0;
    /// The last thing of every scan, of a stopped one too.
    virtual void ScanHasEnded() = 0;
};

/// Measures the peaks of a file column by column, on a thread of its own.
///
/// A complete scan hands the seek information of its stream on to the playback stream. Started and
/// stopped on the main thread.
class PeakScan {
public:
    struct Columns {
        int count = 0;
        unsigned int bytesEach = 0; ///< of decoded audio
    };

    /// What is the owner's, and lives as long as the scan: the thread, to be joined even when the
    /// scan has ended; the stream that it reads, 0 for none; the wish that it stop, which the scan
    /// clears; the playback stream.
    struct State {
        std::thread& thread;
        std::uint32_t& stream;
        std::atomic<bool>& abort;
        const std::atomic<std::uint32_t>& playbackStream;
    };

    PeakScan(const State& state, PeakSink& sink) : m_state(state), m_sink(sink) {}
    PeakScan(const PeakScan&) = delete;
    PeakScan& operator=(const PeakScan&) = delete;
    ~PeakScan() { Stop(); }

    /// A file that cannot be decoded has no column. Not while a scan runs.
    void Start(const std::string& path, const Columns& columns);
    /// Returns when no scan runs.
    void Stop();

private:
    void Run();
    bool ScanColumn(float seconds);
    bool MeasureColumn(float seconds, float (&levels)[2]) const;
    void HandOnSeekInformation() const;
    void End();

    const State m_state;
    PeakSink& m_sink;
    Columns m_columns; // of the scan that runs
};
