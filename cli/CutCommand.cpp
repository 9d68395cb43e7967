#include "cli/Commands.h"
#include "cli/Operands.h"
#include "cli/Report.h"
#include "cli/WriteOutputs.h"
#include "cutting/CutMP3.h"
#include "cutting/CutWAV.h"
#include "engine/FormatType.h"

#include <algorithm>

namespace {

int RunCutter(const Arguments& arguments, bool keep) {
    const std::string& source = arguments.operands[0];
    const float start = ToFloat(TimeOperand(arguments.operands[1]));
    const float end = ToFloat(TimeOperand(arguments.operands[2]));
    const std::string& output = arguments.operands[3];
    const std::optional<FormatType> format = GetFormat(source);
    if (!format) {
        ReportError(source, kUnknownFormat);
        return kFailed;
    }
    const auto write = [&](std::size_t /*index*/, const std::string& path) {
        const auto [lo, hi] = std::minmax(start, end);
        auto* const cutter = *format == FormatType::WAV ? CutWAVFile : CutMP3File;
        return cutter(source.c_str(), path.c_str(), lo, hi, keep);
    };
    return WriteOutputs(source, {output}, write) ? kDone : kFailed;
}

} // namespace

int RunExtract(const Arguments& arguments) {
    return RunCutter(arguments, true);
}

int RunCut(const Arguments& arguments) {
    return RunCutter(arguments, false);
}
