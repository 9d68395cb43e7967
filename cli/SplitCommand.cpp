#include "cli/Commands.h"
#include "cli/HeadlessKlipra.h"
#include "cli/Operands.h"
#include "cli/Report.h"
#include "cli/WriteOutputs.h"

#include <algorithm>

namespace {

/// A place to split at, as it was given.
struct Point {
    std::string text;
    double seconds = 0.0;
    unsigned long long position = 0; // in the decoded stream
};

std::vector<Point> ParsePoints(const std::vector<std::string>& operands) {
    std::vector<Point> points;
    for (std::size_t i = 1; i + 1 < operands.size(); ++i) {
        points.push_back({operands[i], TimeOperand(operands[i])});
    }
    return points;
}

std::vector<std::string> PieceNames(const std::string& pattern, std::size_t count) {
    const std::size_t mark = pattern.rfind('%');
    if (mark == std::string::npos) {
        throw UsageError("'" + pattern + "' has no % for the piece number");
    }
    std::vector<std::string> names;
    for (std::size_t number = 1; number <= count; ++number) {
        names.push_back(std::string(pattern).replace(mark, 1, std::to_string(number)));
    }
    return names;
}

// Finds and sorts the positions. On false, what is wrong with one of them has been reported.
bool Locate(std::vector<Point>& points, const HeadlessKlipra& engine, const std::string& source) {
    for (Point& point : points) {
        point.position = engine.ToPosition(point.seconds);
        if (point.position == 0 || point.position >= engine.lastPosition) {
            ReportError(source, "'" + point.text +
                                    "' does not lie inside the audio, which ends at " +
                                    std::to_string(engine.ToSeconds(engine.length)) + " s");
            return false;
        }
    }
    const auto position = [](const Point& point) { return point.position; };
    std::ranges::sort(points, {}, position);
    const auto twice = std::ranges::adjacent_find(points, {}, position);
    if (twice != points.end()) {
        ReportError(source, "'" + twice->text + "' and '" + std::next(twice)->text +
                                "' are the same position");
        return false;
    }
    return true;
}

} // namespace

int RunSplit(const Arguments& arguments) {
    const std::string& source = arguments.operands.front();
    std::vector<Point> points = ParsePoints(arguments.operands);
    const std::vector<std::string> outputs =
        PieceNames(arguments.operands.back(), points.size() + 1);
    HeadlessKlipra engine;
    if (!engine.Open(source) || !Locate(points, engine, source)) {
        return kFailed;
    }
    const auto write = [&](std::size_t index, const std::string& path) {
        const unsigned long long start = index == 0 ? 0 : points[index - 1].position;
        // The last piece is what remains without everything before it, as in the window.
        return index == points.size()
                   ? engine.CutToFile(false, source, path, 0, start)
                   : engine.CutToFile(true, source, path, start, points[index].position);
    };
    return WriteOutputs(source, outputs, write) ? kDone : kFailed;
}
