#include "cli/Commands.h"
#include "cli/HeadlessKlipra.h"
#include "cli/Json.h"
#include "cli/Operands.h"
#include "cli/Progress.h"
#include "cli/TimeText.h"

#include <algorithm>
#include <cstdio>
#include <limits>

namespace {

constexpr double kLeastSeconds = 0.02; // one block of the search

void SetThresholds(Klipra& engine, const Arguments& arguments) {
    if (arguments.level) {
        const auto level = ParseNumber(*arguments.level);
        if (!level || *level == 0.0) {
            throw UsageError("'" + *arguments.level + "' is not a level");
        }
        engine.thresholdLevel = std::max(ToFloat(*level), std::numeric_limits<float>::min());
    }
    if (arguments.time) {
        engine.thresholdTime = ToFloat(std::max(TimeOperand(*arguments.time), kLeastSeconds));
    }
}

void Search(HeadlessKlipra& engine, const std::string& path) {
    const Progress progress([&] {
        const auto percent = engine.GetSearchPosition() * 100 / std::max(engine.length, 1ULL);
        return "Searching " + path + ": " + std::to_string(percent) + " %";
    });
    engine.SearchSceanChange();
}

void PrintJson(const HeadlessKlipra& engine) {
    Json positions = Json::array();
    for (const unsigned long long position : engine.sceneChangePositions) {
        positions.push_back({{"bytes", position}, {"seconds", engine.ToSeconds(position)}});
    }
    std::puts(JsonText({{"positions", positions}}).c_str());
}

void PrintLines(const HeadlessKlipra& engine) {
    for (const unsigned long long position : engine.sceneChangePositions) {
        std::printf("%llu %.6f\n", position, engine.ToSeconds(position));
    }
}

} // namespace

int RunScenes(const Arguments& arguments) {
    const std::string& path = arguments.operands[0];
    HeadlessKlipra engine;
    SetThresholds(engine, arguments);
    if (!engine.Open(path)) {
        return kFailed;
    }
    Search(engine, path);
    if (arguments.json) {
        PrintJson(engine);
    } else {
        PrintLines(engine);
    }
    return kDone;
}
