#include "finish/FinishMP3.h"

#include "cutting/CutError.h"
#include "cutting/CutSummary.h"
#include "cutting/CutWork.h"
#include "cutting/MP3Output.h"
#include "cutting/MP3Survey.h"
#include "finish/FinishPlan.h"
#include "finish/HeldFrames.h"
#include "finish/JoinPacker.h"
#include "finish/TagLength.h"
#include "mpeg/MPAFile.h"
#include "mpeg/MPAStream.h"
#include "mpeg/Tags.h"

#include <algorithm>
#include <optional>

namespace {

std::vector<FinishNote> notes; // of the thread that cuts, one cut at a time

/// What is known of a source before it is walked through.
struct Source {
    CMPAFile& file;
    const char* path;
    FrameGrid grid;
    std::vector<std::uint8_t> header; // the frame that holds its header; empty for none
};

std::vector<std::uint8_t> HeaderOf(const CMPAFile& file) {
    if (file.GetVBRHeader() == nullptr) {
        return {};
    }
    const CMPAFrame& frame = *file.GetFirstFrame();
    long long offset = frame.GetOffset();
    const unsigned char* const bytes =
        file.GetStream()->ReadBytes(frame.GetSize(), offset, false, false);
    return {bytes, bytes + frame.GetSize()};
}

/// How many frames there are: as the header tells, where it tells of this file.
long long CountFrames(CMPAFile& file) {
    const long long counted = CountInHeader(file);
    return counted != 0 && TellsItsSize(file) ? counted : SurveyMP3(file).frames;
}

Source Examine(CMPAFile& file, const char* path) {
    Source source{file, path, {}, HeaderOf(file)};
    const CMPAHeader& header = *file.GetFirstFrame()->GetHeader();
    source.grid.samplesPerFrame = header.GetSamplesPerFrame();
    source.grid.rateHz = header.GetSamplingRateHz();
    source.grid.hasEdges = SourceFrames(file).IsLayerIII();
    source.grid.music =
        MusicOf(source.grid.hasEdges ? HeaderFrame::GapOf(source.header) : std::nullopt,
                CountFrames(file), CountInHeader(file), source.grid.samplesPerFrame);
    return source;
}

void AddNote(FinishNote::Kind kind, const std::string& tag = {}) {
    notes.push_back({.kind = kind, .tag = tag});
}

/// Writes one piece.
class Finisher {
public:
    Finisher(const Source& source, SourceFrames& frames, const std::string& path)
        : m_source(source), m_frames(frames), m_path(path), m_file(path, source.path) {}

    void Write(FinishPlan plan) {
        if (plan.runs.empty()) {
            throw CutError{CutReason::NoAudioInRange};
        }
        for (int i = 0; i < plan.idleRemovals; ++i) {
            AddNote(FinishNote::Kind::NothingRemoved);
        }
        BeginCutSummary(m_path, SecondsOf(m_source.grid.samplesPerFrame),
                        m_source.grid.samplesPerFrame);
        CopyTags(false);
        m_source.grid.hasEdges ? WriteExactly(plan) : WriteWholeFrames(plan);
        long long unheard = m_file.Frames();
        for (const FrameRun& run : plan.runs) {
            AddToCutSummary(run.begin, run.end - run.begin);
            unheard -= run.end - run.begin;
        }
        SetUnheardOfCutSummary(unheard);
        CorrectLength(plan);
        CopyTags(true);
        if (!m_file.Close()) {
            throw CutError{CutReason::OutputNotWritable, 0, m_path};
        }
    }

private:
    double SecondsOf(long long sampleFrames) const {
        return static_cast<double>(sampleFrames) / m_source.grid.rateHz;
    }

    void WriteExactly(FinishPlan& plan) {
        const long long samples = m_source.grid.samplesPerFrame;
        JoinPacker joins(m_frames, m_file);
        const long long front = joins.Begin(plan.runs.front(), plan.wanted.begin);
        if (m_frames.Get(plan.runs.front().begin) == nullptr) {
            throw CutError{CutReason::NoAudioInRange};
        }
        const SourceFrame& first = joins.FirstFrame();
        HeaderFrame header(m_source.header, first.bytes, first.facts);
        m_file.ReserveHeader(header.Bytes());
        joins.WriteFirst(plan.runs.front());
        for (std::size_t i = 1; i < plan.runs.size(); ++i) {
            NoteJoin(joins.WriteNext(plan.runs[i - 1], plan.runs[i]), joins.FramesBefore() - front);
        }
        joins.End();
        CutOffMissing(plan);
        HeaderTruth truth = m_file.Truth();
        truth.gap = GapAround(plan.wanted, {(plan.runs.front().begin - front) * samples,
                                            plan.runs.back().end * samples});
        m_file.WriteAt(m_file.HeaderOffset(), header.Fill(truth));
    }

    void WriteWholeFrames(FinishPlan& plan) {
        for (const FrameRun& run : plan.runs) {
            m_frames.Load(run.begin, run.begin);
            m_frames.Pass(
                run.end, [this](std::span<const std::uint8_t> frame) { m_file.WriteFrame(frame); });
        }
        CutOffMissing(plan);
        plan.wanted = {plan.runs.front().begin * m_source.grid.samplesPerFrame,
                       plan.runs.back().end * m_source.grid.samplesPerFrame};
        if (m_file.Frames() == 0) {
            throw CutError{CutReason::NoAudioInRange};
        }
    }

    /// The source may hold fewer frames than its header counts: a last one that is cut short.
    void CutOffMissing(FinishPlan& plan) const {
        FrameRun& last = plan.runs.back();
        if (m_frames.IsAtEnd()) {
            last.end = std::max(last.begin, std::min(last.end, m_frames.Next()));
            plan.wanted.end = std::min(plan.wanted.end, last.end * m_source.grid.samplesPerFrame);
        }
    }

    void NoteJoin(const JoinPacker::Join& join, long long framesBefore) const {
        const double at = SecondsOf(framesBefore * m_source.grid.samplesPerFrame);
        const auto add = [&](FinishNote::Kind kind, int frames) {
            if (frames > 0) {
                notes.push_back({.kind = kind,
                                 .atSeconds = at,
                                 .seconds = SecondsOf(frames * static_cast<long long>(
                                                                   m_source.grid.samplesPerFrame)),
                                 .frames = frames});
            }
        };
        add(FinishNote::Kind::JoinMoved, join.framesMoved);
        add(FinishNote::Kind::JoinFades, join.framesFaded);
    }

    /// The leading tags in their order, or the trailing ones, which the collection lists backwards.
    void CopyTags(bool appended) {
        std::vector<const CTag*> tags;
        unsigned int index = 0;
        while (const CTag* const tag = m_source.file.GetTags()->GetNextTag(index)) {
            if (tag->IsAppended() == appended) {
                tags.push_back(tag);
            }
        }
        if (appended) {
            std::ranges::reverse(tags);
        }
        std::ranges::for_each(tags, [this](const CTag* tag) { CopyTag(*tag); });
    }

    void CopyTag(const CTag& tag) {
        constexpr unsigned int kPieceBytes = 64 * 1024;
        const CMPAStream& stream = *m_source.file.GetStream();
        const TagLength length = FindTagLength(stream, tag.GetOffset(), tag.GetSize());
        if (length.digits > 0) {
            m_length = length;
            m_length.offset += m_file.Position() - tag.GetOffset();
        }
        if (length.isLeft) {
            AddNote(FinishNote::Kind::LengthNotFixed, "TLEN");
        }
        for (const std::string& name : length.places) {
            AddNote(FinishNote::Kind::TagIsOfSource, name);
        }
        long long offset = tag.GetOffset();
        for (unsigned int left = tag.GetSize(); left > 0;) {
            const unsigned int size = std::min(left, kPieceBytes);
            m_file.Write({stream.ReadBytes(size, offset, true, false), size});
            left -= size;
        }
    }

    /// Has a tag in front tell how long the result is.
    void CorrectLength(const FinishPlan& plan) {
        if (m_length.digits == 0) {
            return;
        }
        long long sampleFrames = plan.wanted.end - plan.wanted.begin;
        for (std::size_t i = 1; i < plan.runs.size(); ++i) {
            sampleFrames -=
                (plan.runs[i].begin - plan.runs[i - 1].end) * m_source.grid.samplesPerFrame;
        }
        const std::string digits = LengthDigits(SecondsOf(sampleFrames), m_length.digits);
        if (digits.empty()) {
            AddNote(FinishNote::Kind::LengthNotFixed, "TLEN");
        }
        for (std::size_t i = 0; i < digits.size(); ++i) {
            const auto digit = static_cast<std::uint8_t>(digits[i]);
            m_file.WriteAt(m_length.offset + static_cast<long long>(i) * m_length.step,
                           {&digit, 1});
        }
    }

    const Source& m_source;
    SourceFrames& m_frames;
    std::string m_path;
    FinishedFile m_file;
    TagLength m_length; // in the output; without digits for none
};

void WritePieces(CMPAFile& file, const char* src, std::span<const FinishPiece> pieces,
                 std::vector<std::string>& written) {
    BeginWork(file.GetStream()->GetSize());
    const Source source = Examine(file, src);
    SourceFrames frames(file);
    for (const FinishPiece& piece : pieces) {
        const FinishPlan plan = piece.keep ? PlanExtract(source.grid, piece.ranges.front())
                                           : PlanRemoval(source.grid, piece.ranges);
        Finisher(source, frames, piece.path).Write(plan);
        written.push_back(piece.path);
    }
    EndWork();
}

void WriteEdited(CMPAFile& file, const char* src, const std::string& dst,
                 const EditedAudio& audio) {
    std::optional<HeldFrames> held;
    if (!audio.path.empty()) {
        held.emplace(audio.path, audio.runs, file.GetVBRHeader() != nullptr);
    }
    BeginWork(file.GetStream()->GetSize() + (held ? held->FileBytes() : 0));
    const Source source = Examine(file, src);
    SourceFrames frames(file);
    if (held) {
        frames.Compare([&held](long long number, std::span<const std::uint8_t> bytes) {
            held->Compare(number, bytes);
        });
    }
    Finisher(source, frames, dst).Write(audio.Plan(source.grid));
    EndWork();
}

} // namespace

bool FinishEditedMP3(const char* src, const std::string& dst, const EditedAudio& audio) {
    ResetCutFailure();
    notes.clear();
    return WithMP3Source(src, [&](CMPAFile& file) { WriteEdited(file, src, dst, audio); });
}

bool FinishMP3(const char* src, std::span<const FinishPiece> pieces) {
    ResetCutFailure();
    notes.clear();
    std::vector<std::string> written;
    const bool areWritten =
        WithMP3Source(src, [&](CMPAFile& file) { WritePieces(file, src, pieces, written); });
    if (!areWritten) {
        std::ranges::for_each(written, RemoveOutput);
    }
    return areWritten;
}

const std::vector<FinishNote>& FinishNotes() {
    return notes;
}
