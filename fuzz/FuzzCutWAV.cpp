#include "cutting/CutWAV.h"
#include "cutting/WAVLayout.h"
#include "fuzz/CheckedCut.h"
#include "fuzz/Targets.h"
#include "platform/RegularFile.h"
#include "tests/support/WavBuilder.h"

#include <filesystem>

namespace {

WAVLayout ReadLayout(const std::string& path) {
    const FilePointer file = OpenRegularFile(path.c_str());
    WAVLayout layout;
    std::string error;
    Require(file != nullptr && ReadWAVLayout(file.get(), layout, error), "the layout can be read");
    return layout;
}

std::string Size(std::size_t bytes) {
    return WavBuilder::Number(4, static_cast<std::uint32_t>(bytes));
}

void CheckOutput(const FuzzInput& input, const std::string& path) {
    const std::string output = ReadPath(path);
    const WAVLayout source = ReadLayout(input.Path());
    const auto begin = static_cast<std::size_t>(source.DataOffset());
    Require(output.size() >= begin, "the header is there");
    const std::string samples = output.substr(begin);
    std::string header = input.File().substr(0, begin);
    header.replace(4, 4, Size(output.size() - 8)).replace(begin - 4, 4, Size(samples.size()));
    Require(output.starts_with(header), "the header is the source's, but for two sizes");
    if (KeepsRange(input)) {
        Require(input.File().find(samples, begin) != std::string::npos,
                "the samples are a part of the source's");
    }
    if (!samples.empty()) {
        Require(ReadLayout(path).DataOffset() == source.DataOffset(), "the output can be parsed");
    }
}

} // namespace

void FuzzCutWAV(const FuzzInput& input) {
    if (const auto output = CheckedCut(CutWAVFile, input)) {
        CheckOutput(input, *output);
        std::filesystem::remove(*output);
    }
}
