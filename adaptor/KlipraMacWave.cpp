#include "adaptor/KlipraMac.h"
#include "audio/bass.h"
#include "engine/OpenStream.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <system_error>

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
    StartScan(item->path);
    return true;
}

void KlipraMac::DropWaveImage() {
    StopScan();
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

void KlipraMac::StartScan(const std::string& path) {
    scanStream = OpenDecodingStream(path);
    if (scanStream != 0) {
        try {
            scanThread = std::thread(&KlipraMac::ScanPeaks, this);
            return;
        } catch (const std::system_error&) {
            // The system has no more threads: the image stays black.
        }
    }
    waveContext->Finish();
    EndScan();
}

void KlipraMac::StopScan() {
    if (scanThread.joinable()) {
        abortScan = true;
        scanThread.join();
        abortScan = false; // the scan may have been past clearing it
    }
}

void KlipraMac::EndScan() {
    BASS_StreamFree(scanStream);
    scanStream = 0;
    abortScan = false;
    appDelegate->setNeedRefresh(kRefreshAfterScan);
}

void KlipraMac::ScanPeaks() {
    // Single precision moves a column by less than 1 / 2^24 of the way to it: 0.006 pixels at the
    // end of 100 000. The library adds the lengths up in double precision.
    const auto seconds = static_cast<float>(BASS_ChannelBytes2Seconds(scanStream, bytesPerPixel));
    for (int x = 0; x < imageSize.width && ScanColumn(seconds); ++x) {
    }
    if (!abortScan) {
        waveContext->Finish();
        HandOnSeekInformation();
    }
    EndScan();
}

/// Measures and paints the next column.
/// @return false when it was the audio's last, or the scan is to stop
bool KlipraMac::ScanColumn(float seconds) {
    float levels[2] = {};
    if (!MeasureColumn(seconds, levels)) {
        return false;
    }
    waveContext->PaintColumn(levels[0], levels[1], levelColors);
    return BASS_ChannelIsActive(scanStream) != BASS_ACTIVE_STOPPED;
}

/// @return false when there was nothing to measure, or the scan is to stop
bool KlipraMac::MeasureColumn(float seconds, float (&levels)[2]) const {
    constexpr float kLongest = 1.0F; // of one measurement
    bool isMeasured = false;
    float remaining = seconds;
    while (remaining > 0.0F && !abortScan) {
        const float stretch = std::min(remaining, kLongest);
        float part[2] = {};
        if (BASS_ChannelGetLevelEx(scanStream, part, stretch, BASS_LEVEL_STEREO) == FALSE) {
            break;
        }
        isMeasured = true;
        levels[0] = std::max(levels[0], part[0]);
        levels[1] = std::max(levels[1], part[1]);
        remaining -= stretch;
    }
    return isMeasured && !abortScan;
}

void KlipraMac::HandOnSeekInformation() const {
    BASS_ChannelSetPosition(scanStream, kAllBits, BASS_POS_SCAN);
    const DWORD size = BASS_ChannelGetAttributeEx(scanStream, BASS_ATTRIB_SCANINFO, nullptr, 0);
    const std::unique_ptr<std::byte[]> info(size == 0 ? nullptr
                                                      : new (std::nothrow) std::byte[size]);
    if (info != nullptr &&
        BASS_ChannelGetAttributeEx(scanStream, BASS_ATTRIB_SCANINFO, info.get(), size) == size) {
        BASS_ChannelSetAttributeEx(channel, BASS_ATTRIB_SCANINFO, info.get(), size);
    }
}
