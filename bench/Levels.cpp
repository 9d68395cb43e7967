#include "audio/bass.h"
#include "engine/BlockReader.h"
#include "engine/QuietStretches.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <thread>
#include <vector>

namespace {

constexpr int kVisibleWidth = 1000;
constexpr int kFactors[] = {1, 2, 5, 10, 20, 50, 100};
constexpr float kQuietIsBelow = 0.001F;
constexpr float kLeastSeconds = 0.2F;

double ProcessorSeconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Measures a file in columns of one width, as the waveform's scan does.
class Columns {
public:
    explicit Columns(const char* path)
        : m_stream(BASS_StreamCreateFile(FALSE, path, 0, 0, BASS_STREAM_DECODE)) {}
    ~Columns() { BASS_StreamFree(m_stream); }
    Columns(const Columns&) = delete;
    Columns& operator=(const Columns&) = delete;

    /// @return the levels of all columns; none when the file cannot be opened
    std::vector<float> Measure(int columns) const {
        std::vector<float> levels;
        const QWORD bytes = BASS_ChannelGetLength(m_stream, BASS_POS_BYTE);
        const auto seconds = static_cast<float>(
            BASS_ChannelBytes2Seconds(m_stream, bytes / static_cast<QWORD>(columns)));
        for (int column = 0; m_stream != 0 && column < columns; ++column) {
            float peaks[2] = {};
            float left = seconds;
            while (left > 0.0F) {
                float part[2] = {};
                BASS_ChannelGetLevelEx(m_stream, part, std::min(left, 1.0F), BASS_LEVEL_STEREO);
                peaks[0] = std::max(peaks[0], part[0]);
                peaks[1] = std::max(peaks[1], part[1]);
                left -= std::min(left, 1.0F);
            }
            levels.insert(levels.end(), std::begin(peaks), std::end(peaks));
        }
        BASS_ChannelSetPosition(m_stream, ~QWORD{0}, BASS_POS_SCAN);
        return levels;
    }

private:
    const HSTREAM m_stream;
};

std::vector<float> Scan(const char* path, int factor) {
    return Columns(path).Measure(kVisibleWidth * factor);
}

std::size_t Search(const char* path) {
    const BlockReader reader(path);
    QuietStretches stretches(kQuietIsBelow, kLeastSeconds);
    for (Block block; reader.Read(block);) {
        stretches.Add(block);
    }
    stretches.Finish(reader.GetLength());
    return stretches.Found().size();
}

/// Processor time of some work, seconds.
template <typename Work>
double Time(const Work& work) {
    const double begin = ProcessorSeconds();
    work();
    return ProcessorSeconds() - begin;
}

} // namespace

// Scans a file, changes the zoom to every factor of the menu and searches it, and tells how much
// processor time each takes as a part of the first scan's.
int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("Usage: klipra-levels FILE\n", stderr);
        return 2;
    }
    const char* const path = argv[1];
    BASS_KeepLevels(FALSE);
    Search(path); // the file's frames are known from here on, and its bytes are in memory
    const double plain = Time([&] { Scan(path, 1); });
    BASS_KeepLevels(TRUE);
    const double both = Time([&] {
        std::thread search([&] { Search(path); });
        Scan(path, 1);
        search.join();
    });
    BASS_KeepLevels(FALSE);
    BASS_KeepLevels(TRUE);
    std::vector<float> levels;
    const double first = Time([&] { levels = Scan(path, 1); });
    if (levels.empty()) {
        std::fprintf(stderr, "klipra-levels: cannot open %s\n", path);
        return 1;
    }
    std::printf("first scan                    %8.3f s (%.3f x without remembering)\n", first,
                first / plain);
    std::printf("with a search meanwhile       %8.3f s  %.4f x\n", both, both / first);
    const auto tell = [&](const char* what, int factor, double seconds) {
        std::printf("%s %3d %8.3f s  %.4f x\n", what, factor, seconds, seconds / first);
    };
    for (const int factor : kFactors) {
        tell("change of zoom to factor ", factor, Time([&] { Scan(path, factor); }));
    }
    tell("search after it          ", 0, Time([&] { Search(path); }));
    return 0;
}
