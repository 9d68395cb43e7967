#include "cli/FinishPieces.h"

#include "cli/Report.h"
#include "cutting/CutWholeWAV.h"
#include "cutting/WholeWAVLayout.h"
#include "finish/FinishMP3.h"
#include "platform/RegularFile.h"

#include <algorithm>
#include <cmath>

namespace {

/// Where times lie in a WAV, in sample frames.
class WAVTimes {
public:
    /// Of what is no WAV nothing is known; the cutter tells what is wrong with it.
    explicit WAVTimes(const std::string& source) {
        const FilePointer file = OpenRegularFile(source.c_str());
        WholeWAVLayout layout;
        if (file != nullptr && ReadWholeWAVLayout(file.get(), layout) == CutReason::None) {
            m_rateHz = layout.samplesPerSecond;
            m_total = layout.SampleFrames();
        }
    }

    /// What a piece keeps, in ascending order.
    std::vector<SampleRange> Kept(const Piece& piece) const {
        if (piece.keep) {
            return {{Position(piece.ranges[0].begin), Position(piece.ranges[0].end)}};
        }
        std::vector<CutRange> ranges;
        for (const TimeRange& range : piece.ranges) {
            ranges.push_back({range.begin, range.end});
        }
        std::vector<SampleRange> kept;
        long long begin = 0;
        for (const CutRange& range : MergedRanges(ranges)) {
            kept.push_back({begin, Position(range.start)});
            begin = std::max(begin, Position(range.end));
        }
        kept.push_back({begin, m_total});
        return kept;
    }

private:
    long long Position(double seconds) const {
        return std::isfinite(seconds) ? std::min(SampleAt(seconds, m_rateHz), m_total) : m_total;
    }

    double m_rateHz = 0.0;
    long long m_total = 0;
};

bool FinishAllMP3(const std::string& source, const std::vector<Piece>& pieces,
                  const std::vector<std::string>& paths, CutOutcome& outcome) {
    std::vector<FinishPiece> toFinish;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        FinishPiece piece{paths[i], {}, pieces[i].keep};
        for (const TimeRange& range : pieces[i].ranges) {
            piece.ranges.push_back({range.begin, range.end});
        }
        toFinish.push_back(std::move(piece));
    }
    const bool areFinished = FinishMP3(source.c_str(), toFinish);
    outcome = {CutSummaries(), CutWarnings()};
    if (areFinished) {
        for (const FinishNote& note : FinishNotes()) {
            ReportWarning(source, DescribeNote(note));
        }
    }
    return areFinished;
}

} // namespace

bool FinishPieces(const std::string& source, FormatType format, const std::vector<Piece>& pieces,
                  const std::vector<std::string>& paths, CutOutcome& outcome) {
    outcome = {};
    if (format == FormatType::MP3) {
        return FinishAllMP3(source, pieces, paths, outcome);
    }
    const WAVTimes times(source);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (!FinishWAV(source.c_str(), paths[i].c_str(), times.Kept(pieces[i]))) {
            return false;
        }
        outcome.summaries.push_back(CutSummaries().front());
    }
    return true;
}
