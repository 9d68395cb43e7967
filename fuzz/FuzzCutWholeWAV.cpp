#include "cutting/CutFailure.h"
#include "cutting/CutWholeWAV.h"
#include "cutting/WholeWAVLayout.h"
#include "fuzz/Targets.h"
#include "tests/support/AlertRecorder.h"

#include <algorithm>
#include <filesystem>

namespace {

constexpr int kKeepsRange = 0; // the flag

std::string SamplesOf(const std::string& bytes, const WholeWAVLayout& layout,
                      const SampleRange& range) {
    return bytes.substr(
        static_cast<std::size_t>(layout.Data().Payload() + range.begin * layout.blockAlign),
        static_cast<std::size_t>((range.end - range.begin) * layout.blockAlign));
}

WholeWAVLayout ReadLayout(const std::string& path) {
    const FilePointer file = OpenRegularFile(path.c_str());
    WholeWAVLayout layout;
    Require(file != nullptr && ReadWholeWAVLayout(file.get(), layout) == CutReason::None,
            "the layout can be read");
    return layout;
}

void CheckOutput(const FuzzInput& input, const std::string& path,
                 const std::vector<SampleRange>& kept) {
    const WholeWAVLayout source = ReadLayout(input.Path());
    const WholeWAVLayout result = ReadLayout(path);
    std::string samples;
    for (const SampleRange& range : kept) {
        samples += SamplesOf(input.File(), source,
                             {std::min(range.begin, source.SampleFrames()),
                              std::min(range.end, source.SampleFrames())});
    }
    const std::string output = ReadPath(path);
    Require(result.Data().size == static_cast<long long>(samples.size()) &&
                SamplesOf(output, result, {0, result.SampleFrames()}) == samples,
            "the samples are the source's");

    // A result is as it has to be, so that nothing is left to be corrected in it.
    const std::string again = FuzzPath("again");
    Require(FinishWAV(path.c_str(), again.c_str(), {{0, result.SampleFrames()}}),
            "a result can be cut");
    Require(ReadPath(again) == output, "all of a result is the result");
    std::filesystem::remove(again);
}

} // namespace

void FuzzCutWholeWAV(const FuzzInput& input) {
    const AlertRecorder alerts;
    const std::string output = FuzzPath("output");
    const auto [begin, end] = std::minmax({input.Number(0), input.Number(1)});
    const std::vector<SampleRange> kept =
        input.Flag(kKeepsRange) ? std::vector<SampleRange>{{begin, end}}
                                : std::vector<SampleRange>{{0, begin}, {end, 1LL << 40}};
    const bool isCut = FinishWAV(input.Path().c_str(), output.c_str(), kept);
    Require(input.IsUntouched(), "a cut leaves its source alone");
    Require(std::filesystem::exists(output) == isCut, "a cut that fails leaves no file");
    Require(isCut == (CutFailure().reason == CutReason::None), "a failure is explained");
    if (isCut) {
        CheckOutput(input, output, kept);
        std::filesystem::remove(output);
    }
}
