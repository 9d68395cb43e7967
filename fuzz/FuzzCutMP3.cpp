#include "cutting/CutMP3.h"
#include "fuzz/CheckedCut.h"
#include "fuzz/Targets.h"
#include "mpeg/MPAFile.h"
#include "mpeg/MPAFileStream.h"
#include "mpeg/Tags.h"
#include "mpeg/VBRIHeader.h"

#include <algorithm>
#include <filesystem>

namespace {

/// Where the audio lies in a file.
struct Audio {
    long long begin;
    long long end;
};

// Every byte between the tags belongs to a frame.
void CheckFrames(const std::string& output, const Audio& audio) {
    CMPAFileStream stream(output.c_str());
    long long offset = audio.begin;
    while (offset < audio.end) {
        const CMPAFrame frame(&stream, offset, false, true, false, nullptr);
        Require(frame.GetOffset() == offset, "one frame follows another");
        offset += frame.GetSize();
    }
    Require(offset == audio.end, "the last frame is whole");
}

// Encoders leave room for all of it; made by hand a header may reach into the audio behind it.
bool FitsItsFrame(const CVBRHeader& header, const CMPAFrame& frame) {
    constexpr long long kXINGBytes = 160; // all fields and the encoder's tag
    constexpr long long kVBRIBytes = 26;
    const auto* vbri = dynamic_cast<const CVBRIHeader*>(&header);
    const long long bytes =
        vbri == nullptr
            ? kXINGBytes
            : kVBRIBytes + static_cast<long long>(vbri->GetTableSize()) * vbri->GetEntrySize();
    return header.GetOffset() + bytes <= frame.GetOffset() + frame.GetSize();
}

// Whether cutting may have brought anything to an end of the audio that is more than audio there.
bool LooksLikeMore(const std::string& audio) {
    constexpr const char* kMarkers[] = {"TAG",   "3DI",  "APETAGEX", "LYRICSEND", "LYRICS200",
                                        "Brava", "Xing", "Info",     "VBRI"};
    return std::any_of(std::begin(kMarkers), std::end(kMarkers),
                       [&](const char* marker) { return audio.find(marker) != std::string::npos; });
}

void CheckOutput(const FuzzInput& input, const std::string& path) {
    const CMPAFile source(input.Path().c_str());
    const std::string output = ReadPath(path);
    const Audio sourceAudio{source.GetTags()->GetBeginOffset(), source.GetTags()->GetEndOffset()};
    const auto leading = static_cast<std::size_t>(sourceAudio.begin);
    const auto trailing = input.File().size() - static_cast<std::size_t>(sourceAudio.end);
    Require(output.size() >= leading + trailing &&
                output.starts_with(input.File().substr(0, leading)) &&
                output.ends_with(input.File().substr(input.File().size() - trailing)),
            "the tags are the source's");

    Audio audio{sourceAudio.begin, static_cast<long long>(output.size() - trailing)};
    CheckFrames(path, audio);
    const bool hasHeader = source.GetVBRHeader() != nullptr;
    audio.begin += hasHeader ? source.GetFirstFrame()->GetSize() : 0;
    constexpr long long kEnoughToParse = 128;
    if (audio.end - audio.begin >= kEnoughToParse && sourceAudio.begin <= sourceAudio.end &&
        (!hasHeader || FitsItsFrame(*source.GetVBRHeader(), *source.GetFirstFrame())) &&
        !LooksLikeMore(output.substr(static_cast<std::size_t>(audio.begin),
                                     static_cast<std::size_t>(audio.end - audio.begin)))) {
        const CMPAFile result(path.c_str());
        Require(result.GetFirstFrame()->GetOffset() == sourceAudio.begin,
                "the output begins with its first frame");
    }
}

} // namespace

void FuzzCutMP3(const FuzzInput& input) {
    if (const auto output = CheckedCut(CutMP3File, input)) {
        try {
            CheckOutput(input, *output);
        } catch (CMPAException& e) {
            throw LawBroken(std::string("the output can be parsed: ") + e.GetErrorDescription());
        }
        std::filesystem::remove(*output);
    }
}
