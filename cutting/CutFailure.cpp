#include "cutting/CutFailure.h"

#include "cutting/CutError.h"
#include "cutting/CutSummary.h"
#include "platform/SystemError.h"

#include <algorithm>
#include <cerrno>

namespace {

// Of the thread that cuts, one cut at a time.
CutProblem failure;
std::vector<CutWarning> warnings;

const char* Text(CutReason reason) {
    switch (reason) {
    case CutReason::None:
        return "";
    case CutReason::SourceUnreadable:
        return "cannot be read";
    case CutReason::SourceChanged:
        return "was changed by another program while it was being cut";
    case CutReason::SourceEndsInFrame:
        return "ends in the middle of a frame";
    case CutReason::NoFrame:
        return "no MPEG audio frame was found in it";
    case CutReason::DamagedTag:
        return "one of its tags is damaged";
    case CutReason::NotWAV:
        return "not a WAV file";
    case CutReason::FormatNotFirst:
        return "the WAV file does not tell its format before its samples";
    case CutReason::DamagedWAV:
        return "the format of the WAV file is damaged";
    case CutReason::NoData:
        return "the WAV file ends before its samples";
    case CutReason::TooManyChunks:
        return "too many chunks before the samples";
    case CutReason::NotPCM:
        return "the samples of the WAV file are not PCM";
    case CutReason::CompressedWAV:
        return "the samples of the WAV file are compressed and cannot be cut";
    case CutReason::NoSamples:
        return "there are no samples in it";
    case CutReason::NoAudioInRange:
        return "there is no audio in the range";
    case CutReason::NothingLeft:
        return "nothing would be left of it";
    case CutReason::ResultTooLarge:
        return "the result is too large for a WAV file";
    case CutReason::OutputNotCreatable:
        return "cannot be created";
    case CutReason::OutputNotWritable:
        return "cannot be written";
    case CutReason::DiskFull:
        return "the disk is full";
    case CutReason::EditAltered:
        return "no longer holds what the edits made of the opened file";
    case CutReason::Cancelled:
        return "cancelled";
    case CutReason::OutOfMemory:
        return "there is too little memory";
    }
    return "";
}

} // namespace

const CutProblem& CutFailure() {
    return failure;
}

std::string DescribeFailure(const CutProblem& problem) {
    const std::string text = Text(problem.reason);
    return problem.errorNumber == 0 ? text : text + ": " + SystemErrorText(problem.errorNumber);
}

std::string DescribeFailure(CutReason reason) {
    return Text(reason);
}

bool IsAboutOutput(CutReason reason) {
    return reason == CutReason::OutputNotCreatable || reason == CutReason::OutputNotWritable ||
           reason == CutReason::DiskFull;
}

const std::vector<CutWarning>& CutWarnings() {
    return warnings;
}

std::string DescribeWarning(CutWarning warning) {
    switch (warning) {
    case CutWarning::LastFrameLeftOut:
        return "the last frame is cut short and was left out";
    case CutWarning::FrameCountWrong:
        return "the header counts other frames than there are";
    case CutWarning::FormatChanges:
        return "the stream changes its format";
    }
    return "";
}

void ResetCutFailure() {
    failure = {};
    warnings.clear();
    ResetCutSummaries();
}

void SetCutFailure(CutReason reason, const std::string& path, int errorNumber) {
    warnings.clear();
    const bool explains = reason == CutReason::SourceChanged && failure.path == path;
    if (failure.reason != CutReason::None && !explains) {
        return;
    }
    failure = IsAboutOutput(reason) && (errorNumber == ENOSPC || errorNumber == EDQUOT)
                  ? CutProblem{CutReason::DiskFull, path}
                  : CutProblem{reason, path, errorNumber};
}

void AddCutWarning(CutWarning warning) {
    const auto place = std::lower_bound(warnings.begin(), warnings.end(), warning);
    if (place == warnings.end() || *place != warning) {
        warnings.insert(place, warning);
    }
}
