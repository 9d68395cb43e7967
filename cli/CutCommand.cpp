#include "cli/Commands.h"
#include "cli/FileFormat.h"
#include "cli/InterruptGuard.h"
#include "cli/Progress.h"
#include "cli/Report.h"
#include "cli/TimeText.h"
#include "cutting/CutMP3.h"
#include "cutting/CutWAV.h"
#include "cutting/OutputFile.h"
#include "platform/FileReplacement.h"

#include <algorithm>
#include <filesystem>
#include <limits>

namespace {

float TimeOperand(const std::string& text) {
    const auto seconds = ParseTime(text);
    if (!seconds) {
        throw UsageError("'" + text + "' is not a time");
    }
    return static_cast<float>(std::min<double>(*seconds, std::numeric_limits<float>::max()));
}

std::string DescribeOutput(const std::string& output, const std::string& writtenPath) {
    std::error_code error;
    const auto bytes = std::filesystem::file_size(writtenPath, error);
    return "Writing " + output + ": " + std::to_string(error ? 0 : bytes / 1000000) + " MB";
}

bool WriteRange(const std::string& source, const std::string& output, float start, float end,
                bool keep) {
    FileReplacement replacement(output);
    if (replacement.GetPath().empty()) {
        ReportError(output, replacement.GetError().message());
        return false;
    }
    const InterruptGuard guard(replacement.GetPath());
    const auto [lo, hi] = std::minmax(start, end);
    auto* const cutter = GetFormat(source) == FileFormat::WAV ? CutWAVFile : CutMP3File;
    bool isWritten = false;
    {
        const Progress progress([&] { return DescribeOutput(output, replacement.GetPath()); });
        isWritten = cutter(source.c_str(), replacement.GetPath().c_str(), lo, hi, keep);
    }
    if (!isWritten) {
        if (!CutFailure().empty()) {
            ReportError(source, CutFailure());
        }
        return false;
    }
    if (!replacement.Commit()) {
        ReportError(output, replacement.GetError().message());
        return false;
    }
    return true;
}

int RunCutter(const Arguments& arguments, bool keep) {
    const std::string& source = arguments.operands[0];
    const float start = TimeOperand(arguments.operands[1]);
    const float end = TimeOperand(arguments.operands[2]);
    const std::string& output = arguments.operands[3];
    if (GetFormat(source) == FileFormat::Unknown) {
        ReportError(source, kUnknownFormat);
        return kFailed;
    }
    std::error_code error;
    if (std::filesystem::equivalent(source, output, error)) {
        ReportError(output, "this is the input itself");
        return kFailed;
    }
    return WriteRange(source, output, start, end, keep) ? kDone : kFailed;
}

} // namespace

int RunExtract(const Arguments& arguments) {
    return RunCutter(arguments, true);
}

int RunCut(const Arguments& arguments) {
    return RunCutter(arguments, false);
}
