#include "app/Audition.h"

#include "adaptor/KlipraMac.h"
#include "audio/bass.h"
#include "cutting/CutSummary.h"

#include <algorithm>
#include <unistd.h>
#include <utility>

namespace {

/// No entry has this label.
const std::string kSuffix = "0";

/// Where the second part of what was left begins, in seconds.
/// @param start  of what was removed, where nothing was left before or behind it
double JoinSeconds(double start) {
    const auto& summaries = CutSummaries();
    if (summaries.size() != 1 || summaries.front().runs.size() < 2) {
        return start;
    }
    const CutSummary& summary = summaries.front();
    return static_cast<double>(summary.runs.front().count) * summary.unitSeconds;
}

} // namespace

Audition::Audition() {
    constexpr int kMilliseconds = 10;
    m_timer.setInterval(kMilliseconds);
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.callOnTimeout(this, &Audition::StopAtEnd);
}

Audition::~Audition() {
    Stop();
}

bool Audition::Play(KlipraMac& engine) {
    Stop();
    const HistoryItem* const item = engine.FindHistoryItem(engine.currentHistoryId);
    const auto [start, end] = std::minmax(engine.cutPositions.start, engine.cutPositions.end);
    const double startSeconds = BASS_ChannelBytes2Seconds(engine.channel, start);
    if (item == nullptr || end == kUnsetPosition) {
        return false;
    }
    const std::string path = engine.MakeTargetPath(kSuffix);
    if (!engine.CutExec(false, item->path, path, start, end)) {
        return false;
    }
    m_path = path;
    m_stream = BASS_StreamCreateFile(FALSE, path.c_str(), 0, 0, 0);
    const double join = JoinSeconds(startSeconds);
    const QWORD first = BASS_ChannelSeconds2Bytes(m_stream, std::max(join - kSecondsAround, 0.0));
    m_end = std::min(BASS_ChannelSeconds2Bytes(m_stream, join + kSecondsAround),
                     BASS_ChannelGetLength(m_stream, BASS_POS_BYTE));
    if (BASS_ChannelSetPosition(m_stream, first, BASS_POS_BYTE) == FALSE ||
        BASS_ChannelPlay(m_stream, FALSE) == FALSE) {
        Stop();
        return false;
    }
    m_timer.start();
    return true;
}

void Audition::StopAtEnd() {
    if (BASS_ChannelIsActive(m_stream) == BASS_ACTIVE_STOPPED ||
        BASS_ChannelGetPosition(m_stream, BASS_POS_BYTE) >= m_end) {
        Stop();
    }
}

bool Audition::Stop() {
    m_timer.stop();
    if (!m_path.empty()) {
        unlink(m_path.c_str());
        m_path.clear();
    }
    const std::uint32_t stream = std::exchange(m_stream, 0);
    return stream != 0 && BASS_StreamFree(stream) != FALSE;
}
