#include "audio/bass.h"
#include "engine/Klipra.h"

#include <algorithm>
#include <cmath>

unsigned long long Klipra::SampleFrameAt(unsigned long long position) const {
    return BASS_ChannelSeconds2Bytes(channel, BASS_ChannelBytes2Seconds(channel, position));
}

bool Klipra::MovePositionNext() {
    const unsigned long long current = GetCurrentPosition();
    // The middle of a stretch may fall inside a sample frame, and the stream then stands at that
    // frame's beginning: compared as it is, the same position would be the next one forever.
    const auto next = std::partition_point(
        sceneChangePositions.begin(), sceneChangePositions.end(),
        [&](unsigned long long position) { return SampleFrameAt(position) <= current; });
    if (next == sceneChangePositions.end()) {
        return false;
    }
    SetCurrentPosition(*next);
    return true;
}

bool Klipra::MovePositionBack() {
    const auto next = std::lower_bound(sceneChangePositions.begin(), sceneChangePositions.end(),
                                       GetCurrentPosition());
    if (next == sceneChangePositions.begin()) {
        return false;
    }
    SetCurrentPosition(*std::prev(next));
    return true;
}

bool Klipra::MovePositionTop() {
    SetCurrentPosition(0);
    return true;
}

bool Klipra::MovePositionLast() {
    SetCurrentPosition(length - 1);
    lastPosition = GetCurrentPosition();
    return true;
}

void Klipra::MovePositionLeft() {
    MoveBy(-moveAmount);
}

void Klipra::MovePositionRight() {
    MoveBy(moveAmount);
}

void Klipra::MoveBy(double seconds) {
    constexpr double kMilliSecondsPerSecond = 1000.0;
    const double bytes =
        static_cast<double>(bytesPerMilliSecond) * std::abs(seconds) * kMilliSecondsPerSecond;
    const unsigned long long step =
        bytes < static_cast<double>(length) ? static_cast<unsigned long long>(bytes) : length;
    const unsigned long long position = GetCurrentPosition();
    if (seconds < 0.0) {
        SetCurrentPosition(step > position ? 0 : position - step);
    } else {
        SetCurrentPosition(position < length - step ? position + step : length);
    }
}

void Klipra::MovePositionRelative(int x, int y) {
    constexpr int kRowsPerImage = 200;
    // Overflows wrap around; what lies outside the stream is refused by the library.
    const auto product =
        static_cast<int>(static_cast<unsigned int>(y) * static_cast<unsigned int>(waveSize.width));
    const auto pixel = static_cast<int>(static_cast<unsigned int>(x) +
                                        static_cast<unsigned int>(product / kRowsPerImage));
    SetCurrentPosition(bytesPerPixel * static_cast<unsigned long long>(pixel));
}
