#include "cli/Commands.h"
#include "cli/HeadlessKlipra.h"
#include "cli/Operands.h"
#include "cli/Pieces.h"
#include "cli/SourceFile.h"

#include <algorithm>

namespace {

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
    double length = 0.0;
    const bool needsLength = std::ranges::any_of(asked, [](const AskedRange& range) {
        return range.start.isFromEnd || range.end.isFromEnd;
    });
    if (needsLength && !MeasureLength(source, length)) {
        return kFailed;
    }
    Piece piece{.output = arguments.operands.back(), .keep = keep};
    for (const AskedRange& range : asked) {
        const auto [lo, hi] = std::minmax({range.start.In(length), range.end.In(length)});
        piece.ranges.push_back({lo, hi});
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
