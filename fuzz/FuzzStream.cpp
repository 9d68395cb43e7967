#include "audio/bass.h"
#include "fuzz/Targets.h"

#include <cmath>
#include <cstdlib>
#include <vector>

namespace {

/// A stretch that was measured.
struct Stretch {
    QWORD begin = 0;
    QWORD end = 0;
    float levels[2] = {};
    bool operator==(const Stretch&) const = default;
};

bool MoveTo(HSTREAM stream, QWORD position) {
    return BASS_ChannelSetPosition(stream, position, BASS_POS_BYTE) != FALSE;
}

Stretch Measure(HSTREAM stream, float seconds) {
    Stretch stretch{.begin = BASS_ChannelGetPosition(stream, BASS_POS_BYTE)};
    const bool isMeasured =
        BASS_ChannelGetLevelEx(stream, stretch.levels, seconds, BASS_LEVEL_STEREO) != FALSE;
    stretch.end = BASS_ChannelGetPosition(stream, BASS_POS_BYTE);
    Require(stretch.end >= stretch.begin && (isMeasured || stretch.end == stretch.begin),
            "only a call that succeeds moves on");
    for (const float level : stretch.levels) {
        Require(level >= 0.0F && level <= 1.0F, "a level lies between nothing and all");
    }
    return stretch;
}

Stretch MeasureAt(HSTREAM stream, QWORD position, float seconds) {
    Require(MoveTo(stream, position), "every position can be reached");
    return Measure(stream, seconds);
}

void CheckLength(HSTREAM stream, QWORD length) {
    const double seconds = BASS_ChannelBytes2Seconds(stream, length);
    Require(std::isfinite(seconds) && seconds >= 0.0 &&
                BASS_ChannelSeconds2Bytes(stream, seconds) == length,
            "the length in seconds means the length");
    Require(MoveTo(stream, length) && !MoveTo(stream, length + 1) &&
                BASS_ChannelGetPosition(stream, BASS_POS_BYTE) == length,
            "positions end with the length");
}

/// @param plain  a stream of the same file that remembers nothing
void CheckLevels(const FuzzInput& input, HSTREAM stream, HSTREAM plain, QWORD length) {
    constexpr int kStretches = 64; // at most a second each
    const float seconds = static_cast<float>(1 + input.Number(0) % 1000) / 1000.0F;
    std::vector<Stretch> through{MeasureAt(stream, 0, seconds)};
    for (int i = 1; i < kStretches && through.back().end < length; ++i) {
        through.push_back(Measure(stream, seconds));
        Require(through.back().begin == through[through.size() - 2].end, "nothing is left out");
    }
    const Stretch& chosen = through[input.Number(1) % through.size()];
    MeasureAt(stream, input.Number(2) * 997ULL % (length + 1), 0.02F); // somewhere else
    const Stretch again = MeasureAt(stream, chosen.begin, seconds);
    Require(again.end != chosen.end || again == chosen,
            "what is heard does not depend on how one got there");
    Require(MeasureAt(plain, chosen.begin, seconds) == again,
            "what is remembered is what would be decoded");
}

void CheckSeekInformation(HSTREAM stream) {
    const DWORD size = BASS_ChannelGetAttributeEx(stream, BASS_ATTRIB_SCANINFO, nullptr, 0);
    std::vector<char> data(size);
    Require(BASS_ChannelGetAttributeEx(stream, BASS_ATTRIB_SCANINFO, data.data(), size) == size,
            "the seek information has its size");
    Require(size == 0 ||
                BASS_ChannelSetAttributeEx(stream, BASS_ATTRIB_SCANINFO, data.data(), size),
            "a stream takes its own seek information");
}

} // namespace

void FuzzStream(const FuzzInput& input) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no stream and so no other thread is there yet
    setenv("KLIPRA_DECODE_THREADS", input.Flag(0) ? "2" : "1", 1);
    const HSTREAM stream =
        BASS_StreamCreateFile(FALSE, input.Path().c_str(), 0, 0, BASS_STREAM_DECODE);
    if (stream != 0) {
        const QWORD length = BASS_ChannelGetLength(stream, BASS_POS_BYTE);
        Require(length != ~QWORD{0}, "a stream has a length");
        CheckLength(stream, length);
        BASS_KeepLevels(FALSE);
        const HSTREAM plain =
            BASS_StreamCreateFile(FALSE, input.Path().c_str(), 0, 0, BASS_STREAM_DECODE);
        BASS_KeepLevels(TRUE);
        CheckLevels(input, stream, plain, length);
        BASS_StreamFree(plain);
        CheckSeekInformation(stream);
        Require(BASS_StreamFree(stream) && !BASS_StreamFree(stream), "a stream is freed once");
    }
}
