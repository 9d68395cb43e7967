#include "audio/bass.h"
#include "fuzz/Targets.h"

#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr QWORD kNoBytes = ~QWORD{0};
constexpr int kLevels = 64; // at most a second each

/// A stretch that was measured.
struct Stretch {
    QWORD begin;
    QWORD end;
    float levels[2];
    bool operator==(const Stretch&) const = default;
};

Stretch Measure(HSTREAM stream, float seconds) {
    Stretch stretch{};
    stretch.begin = BASS_ChannelGetPosition(stream, BASS_POS_BYTE);
    const BOOL isMeasured =
        BASS_ChannelGetLevelEx(stream, stretch.levels, seconds, BASS_LEVEL_STEREO);
    stretch.end = BASS_ChannelGetPosition(stream, BASS_POS_BYTE);
    Require(isMeasured != FALSE || stretch.end == stretch.begin, "a failed call moves nothing");
    Require(stretch.end >= stretch.begin && stretch.levels[0] >= 0.0F &&
                stretch.levels[0] <= 1.0F && stretch.levels[1] >= 0.0F && stretch.levels[1] <= 1.0F,
            "a level lies between nothing and all");
    return stretch;
}

Stretch MeasureAt(HSTREAM stream, QWORD position, float seconds) {
    Require(BASS_ChannelSetPosition(stream, position, BASS_POS_BYTE) != FALSE,
            "every position can be reached");
    return Measure(stream, seconds);
}

void CheckLength(HSTREAM stream, QWORD length) {
    Require(length != kNoBytes, "a stream has a length");
    const double seconds = BASS_ChannelBytes2Seconds(stream, length);
    Require(std::isfinite(seconds) && seconds >= 0.0 &&
                BASS_ChannelSeconds2Bytes(stream, seconds) == length,
            "the length in seconds means the length");
    Require(BASS_ChannelSetPosition(stream, length, BASS_POS_BYTE) != FALSE &&
                BASS_ChannelSetPosition(stream, length + 1, BASS_POS_BYTE) == FALSE &&
                BASS_ChannelGetPosition(stream, BASS_POS_BYTE) == length,
            "positions end with the length");
}

void CheckLevels(const FuzzInput& input, HSTREAM stream, QWORD length) {
    const float seconds = static_cast<float>(1 + input.Number(0) % 1000) / 1000.0F;
    std::vector<Stretch> through{MeasureAt(stream, 0, seconds)};
    for (int i = 1; i < kLevels && through.back().end < length; ++i) {
        through.push_back(Measure(stream, seconds));
        Require(through.back().begin == through[through.size() - 2].end, "nothing is left out");
    }
    const Stretch& chosen = through[input.Number(1) % through.size()];
    static_cast<void>(
        MeasureAt(stream, length == 0 ? 0 : input.Number(2) * 997ULL % length, 0.02F));
    const Stretch again = MeasureAt(stream, chosen.begin, seconds);
    Require(again.end != chosen.end || again == chosen,
            "what is heard does not depend on how one got there");
}

void CheckSeekInformation(HSTREAM stream) {
    std::vector<char> information(
        BASS_ChannelGetAttributeEx(stream, BASS_ATTRIB_SCANINFO, nullptr, 0));
    const auto size = static_cast<DWORD>(information.size());
    Require(BASS_ChannelGetAttributeEx(stream, BASS_ATTRIB_SCANINFO, information.data(), size) ==
                size,
            "the seek information has its size");
    Require(size == 0 || BASS_ChannelSetAttributeEx(stream, BASS_ATTRIB_SCANINFO,
                                                    information.data(), size) != FALSE,
            "a stream takes its own seek information");
}

} // namespace

void FuzzStream(const FuzzInput& input) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no stream and so no other thread is there yet
    setenv("KLIPRA_DECODE_THREADS", input.Flag(0) ? "2" : "1", 1);
    const HSTREAM stream =
        BASS_StreamCreateFile(FALSE, input.Path().c_str(), 0, 0, BASS_STREAM_DECODE);
    if (stream == 0) {
        return;
    }
    const QWORD length = BASS_ChannelGetLength(stream, BASS_POS_BYTE);
    CheckLength(stream, length);
    CheckLevels(input, stream, length);
    CheckSeekInformation(stream);
    Require(BASS_StreamFree(stream) != FALSE && BASS_StreamFree(stream) == FALSE,
            "a stream is freed once");
}
