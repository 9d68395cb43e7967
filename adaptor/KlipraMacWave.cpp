#include "adaptor/KlipraMac.h"
#include "audio/bass.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace {

constexpr QWORD kAllBits = std::numeric_limits<QWORD>::max();

/// Never 0: a millisecond may be less than a sample frame, and there may be no stream to ask.
QWORD BytesOfAMilliSecond(DWORD stream) {
    constexpr double kSeconds = 0.001;
    const QWORD bytes = BASS_ChannelSeconds2Bytes(stream, kSeconds);
    return bytes == 0 || bytes == kAllBits ? 1 : bytes;
}

} // namespace

bool KlipraMac::CreateWaveImage() {
    const HistoryItem* const item = FindHistoryItem(currentHistoryId);
    if (item == nullptr) {
        return false;
    }
    DropWaveImage();
    if (!AllocateImage()) {
        return false;
    }
    ComputeScale();
    // The scan starts last: it may be over at once, and its own message must come after these.
    appDelegate->setNeedRefresh(kRefreshWhileScanning);
    EnableTimer();
    m_scan.Start(item->path, {imageSize.width, bytesPerPixel});
    return true;
}

void KlipraMac::DropWaveImage() {
    m_scan.Stop();
    waveContext.reset();
    wavePixels.reset();
    imageSize = {};
}

bool KlipraMac::AllocateImage() {
    if (waveSize.width < 1 || waveSize.width > kMaxWaveWidth || waveSize.height < 1 ||
        waveSize.height > kWaveHeight) {
        return false;
    }
    // 20 zoom changes in a second need not clear 80 MB each: most are never written to.
    wavePixels = MakePageArray<std::uint32_t>(static_cast<std::size_t>(waveSize.width) *
                                              static_cast<std::size_t>(waveSize.height));
    if (wavePixels == nullptr) {
        return false;
    }
    imageSize = waveSize;
    waveContext.emplace(wavePixels.get(), imageSize);
    levelColors = MakeLevelColors(imageSize.height);
    return true;
}

void KlipraMac::ComputeScale() {
    constexpr QWORD kMostBytes = std::numeric_limits<unsigned int>::max();
    const QWORD streamBytes = length;
    const QWORD leastBytes = BytesOfAMilliSecond(channel);
    bytesPerPixel = static_cast<unsigned int>(std::min(
        std::max(streamBytes / static_cast<QWORD>(imageSize.width), leastBytes), kMostBytes));
    const auto visibleWidth = static_cast<QWORD>(std::max(drawSize.width, 1));
    // Nor wider than an image can be.
    const QWORD mostZoom = std::min<QWORD>(kMaxZoom, kMaxWaveWidth / visibleWidth);
    maxZoom = static_cast<int>(std::min(streamBytes / visibleWidth / leastBytes, mostZoom));
}

void KlipraMac::AddColumn(float left, float right) {
    waveContext->PaintColumn(left, right, levelColors);
}

void KlipraMac::FinishColumns() {
    waveContext->Finish();
}

void KlipraMac::ScanHasEnded() {
    appDelegate->setNeedRefresh(kRefreshAfterScan);
}
