#include "cli/Commands.h"
#include "cli/HeadlessKlipra.h"
#include "cli/Operands.h"
#include "cli/Pieces.h"
#include "cli/Report.h"
#include "cli/SourceFile.h"
#include "cli/WAVInfo.h"
#include "places/TextLines.h"

#include <algorithm>
#include <limits>

namespace {

// The length of a file's audio. Returns false after a failure, which has been reported.
bool MeasureLength(const std::string& path, FormatType format, double& seconds) {
    if (format == FormatType::MP3) {
        HeadlessKlipra engine;
        const bool isOpen = engine.Open(path);
        seconds = isOpen ? engine.LengthInSeconds() : 0.0;
        return isOpen;
    }
    std::string error;
    const Json description = DescribeWAV(path, error);
    if (description.is_null()) {
        ReportError(path, error);
        return false;
    }
    seconds = description["seconds"];
    return true;
}

struct AskedRange {
    TimePoint start;
    TimePoint end;
};

// The operands between FILE and OUT.
std::vector<AskedRange> ParseRanges(const std::vector<std::string>& operands) {
    if (operands.size() % 2 != 0) {
        throw UsageError("missing operand: a START needs an END");
    }
    std::vector<AskedRange> ranges;
    for (std::size_t i = 1; i + 2 < operands.size(); i += 2) {
        ranges.push_back({TimeOperand(operands[i]), TimeOperand(operands[i + 1])});
    }
    return ranges;
}

int RunCutter(const Arguments& arguments, bool keep) {
    const std::string& source = arguments.operands.front();
    const std::optional<FormatType> format = SourceFormat(source);
    if (!format) {
        return kFailed;
    }
    const std::vector<AskedRange> asked = ParseRanges(arguments.operands);
    CheckOutputExtension(arguments.operands.back(), *format);
    const bool needsLength = std::ranges::any_of(asked, [](const AskedRange& range) {
        return range.start.isFromEnd || range.end.isFromEnd;
    });
    double length = std::numeric_limits<double>::infinity();
    if (needsLength && !MeasureLength(source, *format, length)) {
        return kFailed;
    }
    Piece piece{.output = arguments.operands.back(), .keep = keep};
    for (const AskedRange& range : asked) {
        const auto [begin, end] = std::minmax({range.start.In(length), range.end.In(length)});
        if (begin >= std::min(end, length)) {
            ReportError(source, "there is no audio from " + SecondsText(begin) + " to " +
                                    SecondsText(end) + " s");
            return kFailed;
        }
        piece.ranges.push_back({begin, std::min(end, length)});
    }
    return WritePieces(source, *format, {piece}, arguments) ? kDone : kFailed;
}

} // namespace

int RunExtract(const Arguments& arguments) {
    return RunCutter(arguments, true);
}

int RunCut(const Arguments& arguments) {
    return RunCutter(arguments, false);
}
