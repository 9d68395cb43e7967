#include "cutting/MP3Survey.h"

#include "cutting/CutError.h"
#include "cutting/FrameWalk.h"
#include "cutting/MP3Output.h"
#include "mpeg/MPAFile.h"

MP3Survey SurveyMP3(CMPAFile& file) {
    ResetCutFailure();
    MP3Survey survey;
    FrameWalk walk(file, FrameWalk::Stump::NoFrame);
    survey.frames = walk.Current() != nullptr && file.GetVBRHeader() == nullptr ? 1 : 0;
    while (walk.Step()) {
        ++survey.frames;
    }
    WarnOfEnd(walk, CountInHeader(file));
    survey.endsInStump = walk.HasFoundStump();
    survey.seconds = static_cast<double>(survey.frames) * FrameSeconds(*file.GetFirstFrame());
    survey.warnings = CutWarnings();
    return survey;
}
