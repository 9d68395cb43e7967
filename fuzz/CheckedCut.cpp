#include "fuzz/CheckedCut.h"

#include "cutting/OutputFile.h"
#include "tests/support/AlertRecorder.h"

#include <algorithm>
#include <filesystem>

std::optional<std::string> CheckedCut(Cutter cutter, const FuzzInput& input) {
    AlertRecorder alerts;
    const std::string output = FuzzFolder() + "output";
    const auto [start, end] = std::minmax({input.Seconds(0), input.Seconds(1)});
    const bool isCut = cutter(input.Path().c_str(), output.c_str(), start, end, KeepsRange(input));
    Require(input.IsUntouched(), "a cut leaves its source alone");
    Require(std::filesystem::exists(output) == isCut, "a cut that fails leaves no file");
    Require(isCut || !alerts.texts.empty() || !CutFailure().empty(), "a failure is explained");
    return isCut ? std::optional(output) : std::nullopt;
}

bool KeepsRange(const FuzzInput& input) {
    return input.Flag(0);
}
