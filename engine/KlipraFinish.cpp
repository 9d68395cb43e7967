#include "audio/bass.h"
#include "cutting/CutSummary.h"
#include "engine/Format.h"
#include "engine/Klipra.h"
#include "finish/FinishMP3.h"

#include <algorithm>
#include <filesystem>
#include <limits>

// What of the opened file edits have left, and how that is saved so that nobody hears them.

/// A mark at the end of the stream means the end of the audio. Of frames so does one at the last
/// position that can be gone to: nobody wants all of the last frame but its last sample.
CutRange Klipra::ToSeconds(const CutPositions& range) const {
    const auto [from, to] = std::minmax(range.start, range.end);
    const unsigned long long end =
        formatType == FormatType::MP3 ? SampleFrameAt(lastPosition) : length;
    return {BASS_ChannelBytes2Seconds(channel, from), to >= end
                                                          ? std::numeric_limits<double>::infinity()
                                                          : BASS_ChannelBytes2Seconds(channel, to)};
}

FrameRuns Klipra::RunsOfEdit(EditKind edit, const CutPositions& range, int parentId) {
    FrameEdit done;
    done.keep = edit != EditKind::Remove;
    done.range = ToSeconds(range);
    if (CutSummaries().size() == 1) {
        const CutSummary& summary = CutSummaries().front();
        done.samples = summary.unitSamples;
        done.rateHz = static_cast<double>(summary.unitSamples) / summary.unitSeconds;
        for (const CutRun& run : summary.runs) {
            done.left.push_back({run.first, run.first + run.count});
        }
    }
    return FindHistoryItem(parentId)->runs.After(done);
}

bool Klipra::FinishExec(const EditedAudio& audio, const std::string& target) {
    const std::string& source = histories.front().path;
    const Format* const format = FindFormat(formatType);
    std::error_code error;
    double bytes = static_cast<double>(
        std::filesystem::file_size(audio.path.empty() ? source : audio.path, error));
    if (audio.range) {
        const double seconds = BASS_ChannelBytes2Seconds(channel, length);
        bytes *= (std::min(audio.range->end, seconds) - audio.range->start) / seconds;
    }
    const bool isWritten =
        format != nullptr && WriteReplacing(source, target, Lasting::ForGood, error ? 0.0 : bytes,
                                            [&](const std::string& path) {
                                                return format->finish(source.c_str(), path, audio);
                                            });
    m_finishNotes =
        isWritten && formatType == FormatType::MP3 ? FinishNotes() : std::vector<FinishNote>();
    return isWritten;
}

bool Klipra::Finish(const HistoryItem& item, std::optional<CutRange> range,
                    const std::string& target) {
    const bool isEdited = item.edit != EditKind::None;
    return FinishExec({item.runs, isEdited ? item.path : std::string(), range}, target);
}

bool Klipra::SaveFinished(std::string& path) {
    return SaveBy(path, [this](const HistoryItem& item, const std::string& target) {
        return Finish(item, std::nullopt, target);
    });
}

void Klipra::SaveRangeFinished() {
    SaveRangeBy([this](const HistoryItem& item, const std::string& target) {
        return Finish(item, ToSeconds(cutPositions), target);
    });
}
