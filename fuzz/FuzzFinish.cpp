#include "comparing/FramePrints.h"
#include "cutting/CutError.h"
#include "cutting/CutFailure.h"
#include "cutting/CutMP3.h"
#include "cutting/CutSummary.h"
#include "finish/FinishMP3.h"
#include "fuzz/Targets.h"
#include "mpeg/MPAFile.h"
#include "mpeg/MPAFileStream.h"
#include "mpeg/Tags.h"
#include "tests/support/AlertRecorder.h"

#include <algorithm>
#include <filesystem>

namespace {

constexpr int kKeepsRange = 0; // the flag

/// Expects an output, of nothing but frames between tags as large as the source's, or none.
void CheckFinished(const FuzzInput& input, bool isFinished, const std::string& path) {
    Require(input.IsUntouched(), "finishing leaves its source alone");
    Require(std::filesystem::exists(path) == isFinished, "a failure leaves no file");
    Require(isFinished == (CutFailure().reason == CutReason::None), "a failure is explained");
    if (!isFinished) {
        return;
    }
    const CMPAFile source(input.Path().c_str());
    const auto size = static_cast<long long>(std::filesystem::file_size(path));
    const auto sourceSize = static_cast<long long>(input.File().size());
    const long long end = size - (sourceSize - source.GetTags()->GetEndOffset());
    CMPAFileStream stream(path.c_str());
    long long offset = source.GetTags()->GetBeginOffset();
    while (offset < end) {
        const CMPAFrame frame(&stream, offset, false, true, false, nullptr);
        Require(frame.GetOffset() == offset, "one frame follows another");
        offset += frame.GetSize();
    }
    Require(offset == end, "the last frame is whole");
    std::filesystem::remove(path);
}

/// None of a file that is too small for the parser, or has no frame but that of its header.
std::vector<FramePrint> FramePrints(const std::string& path) {
    try {
        CMPAFile file(path.c_str());
        return ReadFramePrints(file);
    } catch (const CMPAException&) {
        return {};
    } catch (const CutError&) {
        return {};
    }
}

/// Expects that every frame is told of once, and that nothing is told that is not so.
void CheckComparison(const std::string& sourcePath, const std::string& resultPath) {
    const std::vector<FramePrint> source = FramePrints(sourcePath);
    const std::vector<FramePrint> result = FramePrints(resultPath);
    const Comparison comparison = MatchFrames(source, result);
    Require(comparison.CountFrames() == std::ssize(result), "every frame is told of once");
    for (const Comparison::Run& run : comparison.runs) {
        for (long long i = 0; i < run.count; ++i) {
            Require(source.at(static_cast<std::size_t>(run.source + i)).bytes ==
                        result.at(static_cast<std::size_t>(run.result + i)).bytes,
                    "a frame that is unchanged is there in the source");
        }
    }
}

void Finish(const FuzzInput& input) {
    const std::string output = FuzzPath("output");
    const auto [start, end] = std::minmax({input.Seconds(0), input.Seconds(1)});
    const bool keep = input.Flag(kKeepsRange);
    const CutRange range{start, end};
    const FinishPiece piece{output, {range, {end + 0.1, end + 0.1 + input.Seconds(2)}}, keep};
    CheckFinished(input, FinishMP3(input.Path().c_str(), {&piece, 1}), output);

    const std::string edited = FuzzPath("edited");
    if (!CutMP3WholeFrames(input.Path().c_str(), edited.c_str(), start, end, keep)) {
        return;
    }
    const CutSummary summary = CutSummaries().front();
    CheckComparison(input.Path(), edited);
    FrameEdit edit;
    edit.keep = keep;
    edit.range = range;
    edit.samples = summary.unitSamples;
    edit.rateHz = static_cast<double>(summary.unitSamples) / summary.unitSeconds;
    for (const CutRun& run : summary.runs) {
        edit.left.push_back({run.first, run.first + run.count});
    }
    const EditedAudio audio{FrameRuns().After(edit), edited};
    CheckFinished(input, FinishEditedMP3(input.Path().c_str(), output, audio), output);
    std::filesystem::remove(edited);
}

} // namespace

void FuzzFinish(const FuzzInput& input) {
    AlertRecorder alerts;
    try {
        Finish(input);
    } catch (CMPAException& e) {
        throw LawBroken(std::string("the output can be parsed: ") + e.GetErrorDescription());
    }
}
