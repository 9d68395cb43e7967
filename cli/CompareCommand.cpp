#include "cli/Commands.h"
#include "cli/Progress.h"
#include "cli/Report.h"
#include "cli/SourceFile.h"
#include "comparing/FramePrints.h"
#include "comparing/MatchSamples.h"
#include "comparing/SampleReader.h"
#include "cutting/CutFailure.h"
#include "cutting/MP3Output.h"
#include "cutting/SourceWatch.h"
#include "cutting/WholeWAVLayout.h"
#include "places/PrintableText.h"
#include "platform/RegularFile.h"
#include "platform/SystemError.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <optional>
#include <system_error>
#include <utility>

namespace {

// False after a failure, which has been reported.
bool ReadPrints(const std::string& path, std::vector<FramePrint>& prints) {
    const SilentDesktop silence;
    const bool isRead =
        WithMP3Source(path.c_str(), [&](CMPAFile& file) { prints = ReadFramePrints(file); });
    if (!isRead) {
        ReportError(path, DescribeFailure(CutFailure()));
    }
    return isRead;
}

bool CompareMP3(const std::string& source, const std::string& result, Comparison& comparison) {
    std::vector<FramePrint> before;
    std::vector<FramePrint> after;
    if (!ReadPrints(source, before) || !ReadPrints(result, after)) {
        return false;
    }
    comparison = MatchFrames(before, after);
    return true;
}

/// A WAV that is open for comparing.
struct OpenWAV {
    explicit OpenWAV(std::string name) : path(std::move(name)), watch(path.c_str()) {}

    bool Open() {
        file = OpenRegularFile(path.c_str());
        if (file == nullptr) {
            ReportError(path, SystemErrorText(errno));
            return false;
        }
        const CutReason reason = ReadWholeWAVLayout(file.get(), layout);
        if (reason != CutReason::None) {
            ReportError(path, DescribeFailure(reason));
        }
        return reason == CutReason::None;
    }

    bool HasStayed() const {
        if (watch.HasChanged()) {
            ReportError(path, DescribeFailure(CutReason::SourceChanged));
            return false;
        }
        return true;
    }

    bool HasFormatOf(const OpenWAV& other) const {
        return layout.formatTag == other.layout.formatTag &&
               layout.channels == other.layout.channels &&
               layout.bitsPerSample == other.layout.bitsPerSample &&
               layout.blockAlign == other.layout.blockAlign;
    }

    std::string path;
    SourceWatch watch;
    FilePointer file;
    WholeWAVLayout layout;
};

bool CompareWAV(const std::string& source, const std::string& result, Comparison& comparison) {
    OpenWAV before(source);
    OpenWAV after(result);
    if (!before.Open() || !after.Open()) {
        return false;
    }
    SampleReader reader(after.file.get(), after.layout);
    if (!after.HasFormatOf(before)) {
        // The same bytes would be other samples.
        if (reader.Count() > 0) {
            comparison.foreign.push_back({0, reader.Count()});
        }
        return true;
    }
    SampleReader sourceReader(before.file.get(), before.layout);
    try {
        comparison = MatchSamples(sourceReader, reader);
    } catch (const std::system_error& e) {
        const bool isOfSource = std::ferror(before.file.get()) != 0;
        ReportError(isOfSource ? source : result,
                    "cannot be read: " + SystemErrorText(e.code().value()));
        return false;
    }
    return before.HasStayed() && after.HasStayed();
}

/// A line of the table that people read.
struct Line {
    FrameRun frames;
    std::string what;
};

std::string Between(long long begin, long long end) {
    const std::string first = std::to_string(begin);
    return end - begin == 1 ? first : first + " to " + std::to_string(end - 1);
}

void PrintLines(const Comparison& comparison) {
    std::vector<Line> lines;
    long long kept = 0;
    for (const Comparison::Run& run : comparison.runs) {
        lines.push_back({{run.result, run.result + run.count},
                         (run.count == 1 ? "is " : "are ") +
                             Between(run.source, run.source + run.count) + " of the source"});
        kept += run.count;
    }
    for (const FrameRun& stretch : comparison.altered) {
        lines.push_back({stretch, "altered at a join"});
    }
    for (const FrameRun& stretch : comparison.foreign) {
        lines.push_back({stretch, "from elsewhere"});
    }
    std::ranges::sort(lines, {}, [](const Line& line) { return line.frames.begin; });
    for (const Line& line : lines) {
        std::printf("%s %s\n", Between(line.frames.begin, line.frames.end).c_str(),
                    line.what.c_str());
    }
    std::printf("%lld frames: %lld unchanged, %lld altered, %lld from elsewhere\n",
                comparison.CountFrames(), kept, CountFrames(comparison.altered),
                CountFrames(comparison.foreign));
}

void PrintNumbers(const std::vector<FrameRun>& stretches) {
    const char* separator = "";
    for (const FrameRun& stretch : stretches) {
        for (long long frame = stretch.begin; frame < stretch.end; ++frame) {
            std::printf("%s%lld", separator, frame);
            separator = ",";
        }
    }
}

// As it goes: of a WAV the list of what is foreign can be longer than memory.
void PrintJson(const Comparison& comparison) {
    std::printf("{\"runs\":[");
    const char* separator = "";
    for (const Comparison::Run& run : comparison.runs) {
        std::printf("%s{\"result\":%lld,\"source\":%lld,\"count\":%lld}", separator, run.result,
                    run.source, run.count);
        separator = ",";
    }
    std::printf("],\"altered\":[");
    PrintNumbers(comparison.altered);
    std::printf("],\"foreign\":[");
    PrintNumbers(comparison.foreign);
    std::puts("]}");
}

bool Compare(const std::string& source, const std::string& result, FormatType format,
             Comparison& comparison) {
    const Progress progress(
        [&] { return "Comparing " + Printable(source) + " and " + Printable(result); });
    return format == FormatType::MP3 ? CompareMP3(source, result, comparison)
                                     : CompareWAV(source, result, comparison);
}

} // namespace

int RunCompare(const Arguments& arguments) {
    const std::string& source = arguments.operands[0];
    const std::string& result = arguments.operands[1];
    const std::optional<FormatType> format = SourceFormat(source);
    if (!format) {
        return kFailed;
    }
    CheckOutputExtension(result, *format);
    Comparison comparison;
    if (!SourceFormat(result) || !Compare(source, result, *format, comparison)) {
        return kFailed;
    }
    arguments.Has(Option::Json) ? PrintJson(comparison) : PrintLines(comparison);
    return kDone;
}
