#include "cutting/CutProgress.h"

#include "cutting/CutError.h"
#include "cutting/CutWork.h"

#include <algorithm>

namespace {

CutProgress* installed = nullptr; // set before a cut begins, on the thread that begins it

} // namespace

CutProgressScope::CutProgressScope(CutProgress& progress) {
    installed = &progress;
}

CutProgressScope::~CutProgressScope() {
    installed = nullptr;
}

void BeginWork(long long bytesInAll) {
    if (installed != nullptr) {
        installed->bytesDone.store(0, std::memory_order_relaxed);
        installed->bytesInAll.store(bytesInAll, std::memory_order_relaxed);
        AddWork(0);
    }
}

void AddWork(long long bytes) {
    if (installed == nullptr) {
        return;
    }
    if (installed->isCancelled.load(std::memory_order_relaxed)) {
        throw CutError{CutReason::Cancelled};
    }
    // Nobody else writes it.
    const long long done = installed->bytesDone.load(std::memory_order_relaxed) + bytes;
    installed->bytesDone.store(
        std::min(done, installed->bytesInAll.load(std::memory_order_relaxed)),
        std::memory_order_relaxed);
}

void EndWork() {
    if (installed != nullptr) {
        installed->bytesDone.store(installed->bytesInAll.load(std::memory_order_relaxed),
                                   std::memory_order_relaxed);
    }
}
