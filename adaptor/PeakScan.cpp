#include "adaptor/PeakScan.h"

#include "audio/bass.h"
#include "engine/OpenStream.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <system_error>

void PeakScan::Start(const std::string& path, const Columns& columns) {
    m_columns = columns;
    m_state.stream = OpenDecodingStream(path);
    if (m_state.stream != 0) {
        try {
            m_state.thread = std::thread(&PeakScan::Run, this);
            return;
        } catch (const std::system_error&) {
            // The system has no more threads: there are no columns.
        }
    }
    m_sink.FinishColumns();
    End();
}

void PeakScan::Stop() {
    if (m_state.thread.joinable()) {
        m_state.abort = true;
        m_state.thread.join();
        m_state.abort = false; // the scan may have been past clearing it
    }
}

void PeakScan::End() {
    BASS_StreamFree(m_state.stream);
    m_state.stream = 0;
    m_state.abort = false;
    m_sink.ScanHasEnded();
}

void PeakScan::Run() {
    // Single precision moves a column by less than 1 / 2^24 of the way to it: 0.006 pixels at the
    // end of 100 000. The library adds the lengths up in double precision.
    const auto seconds =
        static_cast<float>(BASS_ChannelBytes2Seconds(m_state.stream, m_columns.bytesEach));
    for (int x = 0; x < m_columns.count && ScanColumn(seconds); ++x) {
    }
    if (!m_state.abort) {
        m_sink.FinishColumns();
        HandOnSeekInformation();
    }
    End();
}

/// Measures the next column.
/// @return false when it was the audio's last, or the scan is to stop
bool PeakScan::ScanColumn(float seconds) {
    float levels[2] = {};
    if (!MeasureColumn(seconds, levels)) {
        return false;
    }
    m_sink.AddColumn(levels[0], levels[1]);
    return BASS_ChannelIsActive(m_state.stream) != BASS_ACTIVE_STOPPED;
}

/// @return false when there was nothing to measure, or the scan is to stop
bool PeakScan::MeasureColumn(float seconds, float (&levels)[2]) const {
    constexpr float kLongest = 1.0F; // of one measurement
    bool isMeasured = false;
    float remaining = seconds;
    while (remaining > 0.0F && !m_state.abort) {
        const float stretch = std::min(remaining, kLongest);
        float part[2] = {};
        if (BASS_ChannelGetLevelEx(m_state.stream, part, stretch, BASS_LEVEL_STEREO) == FALSE) {
            break;
        }
        isMeasured = true;
        levels[0] = std::max(levels[0], part[0]);
        levels[1] = std::max(levels[1], part[1]);
        remaining -= stretch;
    }
    return isMeasured && !m_state.abort;
}

void PeakScan::HandOnSeekInformation() const {
    constexpr QWORD kToTheEnd = std::numeric_limits<QWORD>::max();
    const DWORD stream = m_state.stream;
    BASS_ChannelSetPosition(stream, kToTheEnd, BASS_POS_SCAN);
    const DWORD size = BASS_ChannelGetAttributeEx(stream, BASS_ATTRIB_SCANINFO, nullptr, 0);
    const std::unique_ptr<std::byte[]> info(size == 0 ? nullptr
                                                      : new (std::nothrow) std::byte[size]);
    if (info != nullptr &&
        BASS_ChannelGetAttributeEx(stream, BASS_ATTRIB_SCANINFO, info.get(), size) == size) {
        BASS_ChannelSetAttributeEx(m_state.playbackStream, BASS_ATTRIB_SCANINFO, info.get(), size);
    }
}
