#include "audio/bass.h"

#include <chrono>
#include <cstdio>

namespace {

/// Milliseconds until a stream of the file is open and its length known; negative when that fails.
double OpenMilliseconds(const char* path) {
    const auto begin = std::chrono::steady_clock::now();
    const HSTREAM stream = BASS_StreamCreateFile(FALSE, path, 0, 0, 0);
    if (stream == 0 || BASS_ChannelGetLength(stream, BASS_POS_BYTE) == 0) {
        return -1.0;
    }
    const std::chrono::duration<double, std::milli> elapsed =
        std::chrono::steady_clock::now() - begin;
    BASS_StreamFree(stream);
    return elapsed.count();
}

} // namespace

// Opens a stream of a file as the program does, twice, and tells how long each took.
int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("Usage: klipra-open-stream FILE\n", stderr);
        return 2;
    }
    const double first = OpenMilliseconds(argv[1]);
    const double second = OpenMilliseconds(argv[1]);
    if (first < 0.0 || second < 0.0) {
        std::fprintf(stderr, "klipra-open-stream: cannot open %s\n", argv[1]);
        return 1;
    }
    std::printf("first stream %.3f ms, second stream %.3f ms\n", first, second);
    return 0;
}
