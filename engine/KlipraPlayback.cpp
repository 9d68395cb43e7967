#include "audio/bass.h"
#include "engine/Klipra.h"
#include "engine/OpenStream.h"

#include <algorithm>

namespace {

constexpr double kMilliSecondsPerSecond = 1000.0;

float BytesPerMilliSecond(DWORD stream, QWORD length) {
    constexpr float kWithoutDuration = 100.0F;
    const double milliSeconds = BASS_ChannelBytes2Seconds(stream, length) * kMilliSecondsPerSecond;
    return milliSeconds > 0.0 ? static_cast<float>(static_cast<double>(length) / milliSeconds)
                              : kWithoutDuration;
}

} // namespace

bool Klipra::OpenBASS(void* window) {
    constexpr int kDefaultDevice = -1;
    constexpr DWORD kRateHz = 44100;
    playing = false;
    return BASS_Init(kDefaultDevice, kRateHz, 0, window, nullptr) != FALSE;
}

void Klipra::CloseBASS() {
    if (channel != 0) {
        BASS_ChannelStop(channel);
        BASS_StreamFree(channel);
        channel = 0;
    }
    BASS_Free();
}

bool Klipra::LoadPlayFile() {
    return LoadPlayFile(currentHistoryId);
}

bool Klipra::LoadPlayFile(int id) {
    const HistoryItem* const item = FindHistoryItem(id);
    if (item == nullptr) {
        return true;
    }
    if (channel != 0) {
        BASS_StreamFree(channel);
        channel = 0;
    }
    currentHistoryId = m_loadedId = id;
    cutPositions = item->cutPositions;
    channel = OpenPlaybackStream(item->path);
    if (channel == 0) {
        ErrorMsg(kErrorLoad);
        return false;
    }
    length = BASS_ChannelGetLength(channel, BASS_POS_BYTE);
    lastPosition = length - 1;
    bytesPerMilliSecond = BytesPerMilliSecond(channel, length);
    Zoom(1);
    EnableZoomMenu();
    return true;
}

void Klipra::PlayStart() {
    BASS_ChannelSetSync(channel, BASS_SYNC_END, 0, PlayEndProc, this);
    if (BASS_ChannelPlay(channel, FALSE) != FALSE) {
        EnablePlayStopButton(true);
        EnableTimer();
        // At the very end of a file its callback may have come before the controls were switched.
        if (BASS_ChannelIsActive(channel) == BASS_ACTIVE_STOPPED) {
            EnablePlayStopButton(false);
        }
    }
}

void Klipra::PlayStop() {
    if (BASS_ChannelStop(channel) != FALSE) {
        EnablePlayStopButton(false);
    }
}

void Klipra::PlayOrStop() {
    if (playing) {
        PlayStop();
    } else {
        PlayStart();
    }
}

void Klipra::PlayEndProc(std::uint32_t /*sync*/, std::uint32_t /*stream*/, std::uint32_t /*data*/,
                         void* user) {
    static_cast<Klipra*>(user)->EnablePlayStopButton(false);
}

unsigned long long Klipra::GetCurrentPosition() const {
    return BASS_ChannelGetPosition(channel, BASS_POS_BYTE);
}

bool Klipra::SetCurrentPosition(unsigned long long position) {
    return BASS_ChannelSetPosition(channel, position, BASS_POS_BYTE) != FALSE;
}

double Klipra::GetCurrentPositionInSeconds() const {
    return BASS_ChannelBytes2Seconds(channel, GetCurrentPosition());
}

bool Klipra::SetCurrentPositionInSeconds(double seconds) {
    const unsigned long long position = BASS_ChannelSeconds2Bytes(channel, seconds);
    return SetCurrentPosition(position < length ? position : length - 1);
}

long long Klipra::PositionToMilliSeconds(unsigned long long position) const {
    // A position beyond every stream, such as the one that stands for none, may last longer.
    constexpr double kLimit = 9e18;
    return static_cast<long long>(
        std::min(BASS_ChannelBytes2Seconds(channel, position) * kMilliSecondsPerSecond, kLimit));
}

unsigned long long Klipra::SetStartPosition() {
    return cutPositions.start = GetCurrentPosition();
}

unsigned long long Klipra::SetEndPosition() {
    return cutPositions.end = GetCurrentPosition();
}

void Klipra::ZoomDelta(int delta) {
    const long long wanted = static_cast<long long>(zoom) + delta;
    const auto factor = static_cast<int>(std::clamp<long long>(wanted, 1, std::max(1, maxZoom)));
    if (factor != zoom) {
        Zoom(factor);
    }
}
