#pragma once

#include <atomic>

/// How far a cut is, and the wish that it end: shared by the thread that cuts and those that watch.
struct CutProgress {
    // cutter -> watcher: bytes read of the source so far, and how many it will be. An estimate may
    // be off where a file does not tell how long it is, but the first is never above the second,
    // and both are equal after a cut that succeeded.
    std::atomic<long long> bytesDone{0};
    std::atomic<long long> bytesInAll{0};
    // watcher -> cutter: the cut under way then fails (CutReason::Cancelled) and deletes its
    // output.
    std::atomic<bool> isCancelled{false};
};

/// Lets the cuts made while this lives, on whatever thread, report to a progress and be cancelled
/// by it. One at a time, as there is one cut at a time.
class CutProgressScope {
public:
    /// @param progress  the caller's; has to live as long as this. Each cut starts it anew, but
    ///                  leaves the wish to cancel: a cancelled one cancels all that follow
    explicit CutProgressScope(CutProgress& progress);
    CutProgressScope(const CutProgressScope&) = delete;
    CutProgressScope& operator=(const CutProgressScope&) = delete;
    ~CutProgressScope();
};
