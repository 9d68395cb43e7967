#include "finish/FinishEditedWAV.h"

#include "cutting/CutError.h"
#include "cutting/CutWholeWAV.h"
#include "cutting/WholeWAVLayout.h"
#include "platform/RegularFile.h"

#include <algorithm>
#include <cstring>

namespace {

/// A WAV with what is known of it; without samples where it cannot be read.
struct OpenWAV {
    explicit OpenWAV(const std::string& path) : file(OpenRegularFile(path.c_str())) {
        isSound = file != nullptr && ReadWholeWAVLayout(file.get(), layout) == CutReason::None;
    }

    FilePointer file;
    WholeWAVLayout layout;
    bool isSound;
};

/// Whether the file of edits holds the samples that the runs say. All in bytes of the samples.
class HeldSamples {
public:
    HeldSamples(const std::string& path, const FrameRuns& runs, long long blockAlign)
        : m_wav(path), m_runs(runs), m_blockAlign(blockAlign) {}

    /// @param begin  of the bytes, among the source's samples
    bool Match(long long begin, std::span<const char> bytes) {
        const long long end = begin + static_cast<long long>(bytes.size());
        long long place = 0; // of a run, among the samples held
        for (const FrameRun& run : m_runs.Held()) {
            const long long runBegin = run.begin * m_blockAlign;
            const long long from = std::max(begin, runBegin);
            const long long to = std::min(end, run.end * m_blockAlign);
            if (from < to && !MatchAt(place + from - runBegin,
                                      bytes.subspan(static_cast<std::size_t>(from - begin),
                                                    static_cast<std::size_t>(to - from)))) {
                return false;
            }
            place += (run.end - run.begin) * m_blockAlign;
        }
        return true;
    }

private:
    bool MatchAt(long long place, std::span<const char> bytes) {
        m_held.resize(bytes.size());
        return m_wav.isSound &&
               fseeko(m_wav.file.get(), m_wav.layout.Data().Payload() + place, SEEK_SET) == 0 &&
               std::fread(m_held.data(), 1, m_held.size(), m_wav.file.get()) == m_held.size() &&
               std::memcmp(m_held.data(), bytes.data(), bytes.size()) == 0;
    }

    OpenWAV m_wav;
    const FrameRuns& m_runs;
    const long long m_blockAlign;
    std::vector<char> m_held;
};

} // namespace

bool FinishEditedWAV(const char* src, const std::string& dst, const EditedAudio& audio) {
    const OpenWAV source(src); // one that is not sound is refused by FinishWAV
    const WholeWAVLayout& layout = source.layout;
    const long long frames = source.isSound ? layout.SampleFrames() : 0;
    std::vector<SampleRange> kept;
    for (const FrameRun& run :
         audio.Plan({.samplesPerFrame = 1, .rateHz = layout.samplesPerSecond, .music = {0, frames}})
             .runs) {
        kept.push_back({run.begin, run.end});
    }
    if (audio.path.empty() || !source.isSound) {
        return FinishWAV(src, dst.c_str(), kept);
    }
    HeldSamples held(audio.path, audio.runs, layout.blockAlign);
    const long long begin = layout.Data().Payload();
    const long long end = begin + frames * layout.blockAlign;
    return FinishWAV(src, dst.c_str(), kept, [&](long long offset, std::span<const char> bytes) {
        const bool areSamples = offset >= begin && offset < end;
        if (areSamples && !held.Match(offset - begin, bytes)) {
            throw CutError{CutReason::EditAltered, 0, audio.path};
        }
    });
}
