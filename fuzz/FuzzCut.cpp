#include "cutting/CutMP3.h"
#include "cutting/CutWAV.h"
#include "cutting/OutputFile.h"
#include "cutting/WAVLayout.h"
#include "fuzz/Targets.h"
#include "mpeg/MPAFile.h"
#include "mpeg/MPAFileStream.h"
#include "mpeg/Tags.h"
#include "mpeg/VBRIHeader.h"
#include "tests/support/AlertRecorder.h"
#include "tests/support/WavBuilder.h"

#include <algorithm>
#include <filesystem>

namespace {

constexpr int kKeepsRange = 0; // the flag

// Checks what holds for either format, and of an output what holds for its own.
void CheckCut(decltype(CutMP3File)& cut, const FuzzInput& input,
              void (*checkOutput)(const FuzzInput&, const std::string& path)) {
    AlertRecorder alerts;
    const std::string output = FuzzPath("output");
    const auto [start, end] = std::minmax({input.Seconds(0), input.Seconds(1)});
    const bool isCut =
        cut(input.Path().c_str(), output.c_str(), start, end, input.Flag(kKeepsRange));
    Require(input.IsUntouched(), "a cut leaves its source alone");
    Require(std::filesystem::exists(output) == isCut, "a cut that fails leaves no file");
    Require(isCut == (CutFailure().reason == CutReason::None), "a failure is explained");
    if (isCut) {
        checkOutput(input, output);
        std::filesystem::remove(output);
    }
}

// Encoders leave room for all of it; made by hand a header may reach into the audio behind it.
bool FitsItsFrame(const CVBRHeader& header, const CMPAFrame& frame) {
    constexpr unsigned int kXINGBytes = 160; // all fields and the encoder's tag
    constexpr unsigned int kVBRIBytes = 26;
    const auto* vbri = dynamic_cast<const CVBRIHeader*>(&header);
    const unsigned int bytes =
        vbri == nullptr ? kXINGBytes : kVBRIBytes + vbri->GetTableSize() * vbri->GetEntrySize();
    return header.GetOffset() + bytes <= frame.GetOffset() + frame.GetSize();
}

// Whether cutting may have brought anything to an end of the audio that is more than audio there.
bool LooksLikeMore(const std::string& audio) {
    constexpr const char* kMarkers[] = {"TAG",   "3DI",  "APETAGEX", "LYRICSEND", "LYRICS200",
                                        "Brava", "Xing", "Info",     "VBRI"};
    return std::any_of(std::begin(kMarkers), std::end(kMarkers),
                       [&](const char* marker) { return audio.find(marker) != std::string::npos; });
}

void CheckMP3(const FuzzInput& input, const std::string& path) {
    const CMPAFile source(input.Path().c_str());
    const std::string output = ReadPath(path);
    const long long begin = source.GetTags()->GetBeginOffset();
    const long long end = source.GetTags()->GetEndOffset();
    const std::string leading = input.File().substr(0, static_cast<std::size_t>(begin));
    const std::string trailing = input.File().substr(static_cast<std::size_t>(end));
    Require(output.size() >= leading.size() + trailing.size() && output.starts_with(leading) &&
                output.ends_with(trailing),
            "the tags are the source's");

    // Every byte between them belongs to a frame.
    CMPAFileStream stream(path.c_str());
    const auto outputEnd = static_cast<long long>(output.size() - trailing.size());
    long long offset = begin;
    while (offset < outputEnd) {
        const CMPAFrame frame(&stream, offset, false, true, false, nullptr);
        Require(frame.GetOffset() == offset, "one frame follows another");
        offset += frame.GetSize();
    }
    Require(offset == outputEnd, "the last frame is whole");

    constexpr long long kEnoughToParse = 128;
    const CVBRHeader* header = source.GetVBRHeader();
    const CMPAFrame& first = *source.GetFirstFrame();
    const long long audio = begin + (header != nullptr ? first.GetSize() : 0);
    if (outputEnd - audio >= kEnoughToParse && begin <= end &&
        (header == nullptr || FitsItsFrame(*header, first)) &&
        !LooksLikeMore(output.substr(static_cast<std::size_t>(audio),
                                     static_cast<std::size_t>(outputEnd - audio)))) {
        Require(CMPAFile(path.c_str()).GetFirstFrame()->GetOffset() == begin,
                "the output begins with its first frame");
    }
}

WAVLayout ReadLayout(const std::string& path) {
    const FilePointer file = OpenRegularFile(path.c_str());
    WAVLayout layout;
    Require(file != nullptr && ReadWAVLayout(file.get(), layout) == CutReason::None,
            "the layout can be read");
    return layout;
}

void CheckWAV(const FuzzInput& input, const std::string& path) {
    const std::string output = ReadPath(path);
    const auto begin = static_cast<std::size_t>(ReadLayout(input.Path()).DataOffset());
    Require(output.size() >= begin, "the header is there");
    const std::string samples = output.substr(begin);
    const auto sampleBytes = static_cast<std::uint32_t>(samples.size());
    std::string header = input.File().substr(0, begin - 4) + WavBuilder::Number(4, sampleBytes);
    header.replace(4, 4, WavBuilder::Number(4, static_cast<std::uint32_t>(output.size() - 8)));
    Require(output.starts_with(header), "the header is the source's, but for two sizes");
    Require(!input.Flag(kKeepsRange) || input.File().find(samples, begin) != std::string::npos,
            "the samples are a part of the source's");
    Require(samples.empty() || ReadLayout(path).DataOffset() == static_cast<long long>(begin),
            "the output can be parsed");
}

} // namespace

void FuzzCutMP3(const FuzzInput& input) {
    try {
        CheckCut(CutMP3File, input, CheckMP3);
    } catch (CMPAException& e) {
        throw LawBroken(std::string("the output can be parsed: ") + e.GetErrorDescription());
    }
}

void FuzzCutWAV(const FuzzInput& input) {
    CheckCut(CutWAVFile, input, CheckWAV);
}
