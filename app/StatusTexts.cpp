#include "app/StatusTexts.h"

#include "adaptor/KlipraMac.h"
#include "app/Markers.h"
#include "audio/bass.h"
#include "engine/Format.h"

#include <algorithm>

namespace {

std::string TimeAt(const KlipraMac& klipra, unsigned long long position) {
    return ClockLabel(klipra.PositionToMilliSeconds(position));
}

std::string FileText(const KlipraMac& klipra) {
    const Format* const format = FindFormat(klipra.formatType);
    if (klipra.channel == 0 || format == nullptr) {
        return "";
    }
    return std::string(format->name) + "  長さ " + TimeAt(klipra, klipra.length);
}

std::string RangeText(const KlipraMac& klipra) {
    const auto [start, end] = klipra.cutPositions;
    if (klipra.channel == 0 || (start == kUnsetPosition && end == kUnsetPosition)) {
        return "";
    }
    const auto textOf = [&](unsigned long long position) {
        return position == kUnsetPosition ? "–" : TimeAt(klipra, position);
    };
    std::string text = "範囲 " + textOf(start) + " ～ " + textOf(end);
    if (start != kUnsetPosition && end != kUnsetPosition) {
        const auto [first, last] = std::minmax(start, end);
        text += " (" + TimeAt(klipra, last - first) + ")";
    }
    return text;
}

std::string ReadFailureText(const KlipraMac& klipra) {
    BASS_READFAILURE failure{};
    return BASS_ChannelGetReadFailure(klipra.channel, &failure) == FALSE
               ? ""
               : TimeAt(klipra, failure.position) + " から先を読み取れません";
}

std::string WaveformText(const KlipraMac& klipra) {
    const auto& wave = klipra.GetWaveContext();
    if (!wave) {
        return "";
    }
    const long long percent = 100LL * wave->GetFinishedColumns() / wave->GetSize().width;
    return percent == 100 ? "" : "波形 " + std::to_string(percent) + "%";
}

} // namespace

StatusTexts MakeStatusTexts(const KlipraMac& klipra) {
    const std::size_t found = klipra.sceneChangePositions.size();
    return {FileText(klipra), RangeText(klipra),
            found == 0 ? "" : "無音 " + std::to_string(found) + "か所", ReadFailureText(klipra),
            WaveformText(klipra)};
}
