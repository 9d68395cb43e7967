#include "cli/Pieces.h"

#include "cli/FinishPieces.h"
#include "cli/OutputTargets.h"
#include "cli/PieceCutters.h"
#include "cli/PieceTags.h"
#include "cli/Report.h"
#include "cli/WriteOutputs.h"
#include "cutting/CutSummary.h"
#include "places/PrintableText.h"
#include "places/TextLines.h"

#include <algorithm>
#include <cstdio>

namespace {

std::string RangeText(double begin, double end) {
    return Concat({SecondsText(begin), " to ", SecondsText(end)});
}

std::string AskedText(const std::vector<TimeRange>& ranges) {
    std::string text;
    for (const TimeRange& range : ranges) {
        text += Concat({text.empty() ? "" : ", ", RangeText(range.begin, range.end)});
    }
    return text;
}

// A line about an output that was not written.
void PrintSummary(const Piece& piece, const CutSummary& summary, FormatType format) {
    std::string written;
    long long units = summary.unheard;
    for (const CutRun& run : summary.runs) {
        const double begin = static_cast<double>(run.first) * summary.unitSeconds;
        const double end = static_cast<double>(run.first + run.count) * summary.unitSeconds;
        written += Concat({written.empty() ? "" : ", ", RangeText(begin, end)});
        units += run.count;
    }
    std::printf("%s: %s asked, %s as written, %lld %s\n", Printable(piece.output).c_str(),
                AskedText(piece.ranges).c_str(), written.c_str(), units,
                format == FormatType::WAV ? "sample frames" : "frames");
}

/// One command's pieces, with what its options say about them.
class PieceJob {
public:
    PieceJob(const std::string& source, FormatType format, const std::vector<Piece>& pieces,
             const Arguments& arguments)
        : m_source(source), m_format(format), m_pieces(pieces), m_arguments(arguments) {
        std::ranges::transform(pieces, std::back_inserter(m_names), &Piece::output);
    }

    bool Run() {
        if (!(m_arguments.Has(Option::DryRun) ? Rehearse() : Write())) {
            return false;
        }
        ReportWarnings(m_source, m_outcome.warnings);
        return true;
    }

private:
    bool Write() {
        const bool replacesNothing = m_arguments.Has(Option::NoReplace);
        return WriteOutputs(m_source, m_names, replacesNothing, [&](const auto& paths) {
            return Cut(paths) && (!m_arguments.Has(Option::Tags) || Tag(paths));
        });
    }

    // The real cut, into nothing.
    bool Rehearse() {
        OutputTargets targets;
        const std::vector<std::string> nowhere(m_names.size(), "/dev/null");
        if (!targets.Check(m_source, m_names, m_arguments.Has(Option::NoReplace)) ||
            !WriteWithProgress(m_source, m_names, nowhere,
                               [&](const auto& paths) { return Cut(paths); })) {
            return false;
        }
        for (std::size_t i = 0; i < m_pieces.size(); ++i) {
            PrintSummary(m_pieces[i], m_outcome.summaries[i], m_format);
        }
        return true;
    }

    bool Cut(const std::vector<std::string>& paths) {
        auto* const cut = m_arguments.Has(Option::Finish) ? FinishPieces : CutPieces;
        const Piece& first = m_pieces.front();
        return cut(m_source, m_format, m_pieces, paths, m_outcome) &&
               (first.keep || CheckRemoval(m_source, m_format, first, m_outcome.summaries.front()));
    }

    bool Tag(const std::vector<std::string>& paths) {
        for (std::size_t i = 0; i < paths.size(); ++i) {
            const PieceTags tags{.title = m_pieces[i].title,
                                 .track = static_cast<unsigned int>(i + 1)};
            if (!WritePieceTags(paths[i], m_format, tags)) {
                ReportError(m_names[i], "its tags cannot be written");
                return false;
            }
        }
        return true;
    }

    const std::string& m_source;
    const FormatType m_format;
    const std::vector<Piece>& m_pieces;
    const Arguments& m_arguments;
    std::vector<std::string> m_names;
    CutOutcome m_outcome;
};

} // namespace

bool WritePieces(const std::string& source, FormatType format, const std::vector<Piece>& pieces,
                 const Arguments& arguments) {
    return PieceJob(source, format, pieces, arguments).Run();
}
