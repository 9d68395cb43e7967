#include "cli/CommandTable.h"
#include "cli/Commands.h"
#include "cli/Json.h"
#include "cli/MP3Info.h"
#include "cli/QuietSearch.h"
#include "cli/Report.h"
#include "places/AudacityLabels.h"
#include "places/CsvTable.h"
#include "places/CueSheet.h"
#include "places/PrintableText.h"
#include "places/TextLines.h"

#include <algorithm>
#include <cstdio>
#include <utility>

namespace {

/// What was found in a file.
struct Scenes {
    std::string file; ///< where lines have to tell it, else empty
    std::vector<QuietStretch> stretches{};
    std::vector<unsigned long long> positions{}; ///< bytes
};

std::vector<double> InSeconds(const HeadlessKlipra& engine, const Scenes& scenes) {
    std::vector<double> seconds;
    std::ranges::transform(scenes.positions, std::back_inserter(seconds),
                           [&](unsigned long long position) { return engine.ToSeconds(position); });
    return seconds;
}

bool PrintJson(const HeadlessKlipra& engine, const Scenes& scenes) {
    Json json = Json::object();
    if (!scenes.file.empty()) {
        json["file"] = PathToJson(scenes.file);
    }
    json["positions"] = Json::array();
    for (const unsigned long long position : scenes.positions) {
        json["positions"].push_back({{"bytes", position}, {"seconds", engine.ToSeconds(position)}});
    }
    json["places"] = Json::array();
    for (const QuietStretch& stretch : scenes.stretches) {
        json["places"].push_back({{"begin", engine.ToSeconds(stretch.begin)},
                                  {"end", engine.ToSeconds(stretch.end)},
                                  {"level", FloatToJson(stretch.loudest)}});
    }
    std::puts(JsonText(json).c_str());
    return true;
}

bool PrintLines(const HeadlessKlipra& engine, const Scenes& scenes) {
    for (const unsigned long long position : scenes.positions) {
        std::printf("%llu %.6f%s%s\n", position, engine.ToSeconds(position),
                    scenes.file.empty() ? "" : " ", Printable(scenes.file).c_str());
    }
    return true;
}

bool PrintCueSheet(const HeadlessKlipra& engine, const Scenes& scenes) {
    const std::string text =
        CueSheetText(Klipra::ExtractFilename(engine.Path()), engine.formatType == FormatType::WAV,
                     InSeconds(engine, scenes));
    if (text.empty()) {
        ReportError(engine.Path(), "a CUE sheet can hold " + std::to_string(kMostCueTracks) +
                                       " tracks, and there are more");
        return false;
    }
    std::fputs(text.c_str(), stdout);
    return true;
}

bool PrintLabels(const HeadlessKlipra& engine, const Scenes& scenes) {
    std::fputs(LabelsText(InSeconds(engine, scenes), scenes.file).c_str(), stdout);
    return true;
}

bool PrintCsv(const HeadlessKlipra& engine, const Scenes& scenes) {
    std::vector<CsvPlace> places;
    for (const unsigned long long position : scenes.positions) {
        places.push_back({position, engine.ToSeconds(position)});
    }
    std::fputs(CsvRows(places, scenes.file).c_str(), stdout);
    return true;
}

using Printer = bool (*)(const HeadlessKlipra&, const Scenes&);

// In the order of FormatNames.
constexpr Printer kPrinters[] = {PrintLines, PrintCueSheet, PrintLabels, PrintCsv};

Printer FindPrinter(const Arguments& arguments) {
    const auto format = arguments.Value(Option::Format);
    if (arguments.Has(Option::Json)) {
        if (format) {
            throw UsageError("--json and --format exclude each other");
        }
        return PrintJson;
    }
    const std::vector<const char*>& names = FormatNames();
    const auto found = std::ranges::find(names, format.value_or(names.front()),
                                         [](const char* name) { return std::string(name); });
    if (found == names.end()) {
        throw UsageError(Quoted(*format) + " is not a form: write lines, cue, labels or csv");
    }
    Printer const print = kPrinters[found - names.begin()];
    if (print == PrintCueSheet && arguments.operands.size() > 1) {
        throw UsageError("a CUE sheet is of one FILE");
    }
    return print;
}

bool FindScenes(HeadlessKlipra& engine, const std::string& path, const QuietThresholds& thresholds,
                Scenes& scenes) {
    if (!engine.Open(path) || !FindQuietPlaces(engine, thresholds, scenes.stretches)) {
        return false;
    }
    for (const QuietStretch& stretch : scenes.stretches) {
        stretch.AppendPositions(scenes.positions);
    }
    if (engine.formatType == FormatType::MP3) {
        ReportOddities(path);
    }
    return true;
}

} // namespace

int RunScenes(const Arguments& arguments) {
    const QuietThresholds thresholds = QuietThresholds::From(arguments);
    const Printer print = FindPrinter(arguments);
    const bool areSeveral = arguments.operands.size() > 1;
    bool isHeaderDue = print == PrintCsv;
    int status = kDone;
    for (const std::string& path : arguments.operands) {
        HeadlessKlipra engine;
        Scenes scenes{.file = areSeveral ? path : ""};
        const bool isFound = FindScenes(engine, path, thresholds, scenes);
        if (isFound && std::exchange(isHeaderDue, false)) {
            std::fputs(CsvHeader(areSeveral).c_str(), stdout);
        }
        if (!isFound || !print(engine, scenes)) {
            status = kFailed;
        }
    }
    return status;
}
