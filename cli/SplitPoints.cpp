#include "cli/SplitPoints.h"

#include "cli/CommandTable.h"
#include "cli/Operands.h"
#include "cli/QuietSearch.h"
#include "cli/ReadList.h"
#include "cli/Report.h"
#include "places/PieceStarts.h"
#include "places/PrintableText.h"
#include "places/TextLines.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::size_t kMostPieces = 100000;

/// A place as the command line has it.
struct AskedPlace {
    std::string text;
    double seconds = 0.0;
    unsigned long long position = 0; // in the decoded stream
};

// The operands between FILE and OUT.
std::vector<std::string> PlaceOperands(const Arguments& arguments) {
    return {arguments.operands.begin() + 1, arguments.operands.end() - 1};
}

std::string EndText(const HeadlessKlipra& engine) {
    return "the end of the audio at " + SecondsText(engine.LengthInSeconds()) + " s";
}

bool IsInside(const HeadlessKlipra& engine, unsigned long long position) {
    return position != 0 && position < engine.lastPosition;
}

} // namespace

SplitPlan::SplitPlan(const Arguments& arguments) : m_arguments(arguments) {
    const bool isQuiet = arguments.Has(Option::Quiet);
    const int ways = (isQuiet ? 1 : 0) + (arguments.Has(Option::Every) ? 1 : 0) +
                     (arguments.Has(Option::At) ? 1 : 0);
    if (ways > 1) {
        throw UsageError("--quiet, --every and --at exclude each other");
    }
    const std::vector<std::string> places = PlaceOperands(arguments);
    if (ways == 1 && !places.empty()) {
        throw UsageError("extra operand " + Quoted(places.front()));
    }
    if (ways == 0 && places.empty()) {
        throw UsageError("missing operand: where to split");
    }
    for (const Option option : {Option::Level, Option::Time, Option::LeastPiece}) {
        if (arguments.Has(option) && !isQuiet) {
            throw UsageError(std::string(FindOption(option).name) + " goes with --quiet");
        }
    }
    std::ranges::for_each(places, TimeOperand);
    static_cast<void>(QuietThresholds::From(arguments));
    static_cast<void>(DurationOption(arguments, Option::LeastPiece, 0.0));
    if (DurationOption(arguments, Option::Every, 1.0) == 0.0) {
        throw UsageError("pieces of 0 seconds hold nothing");
    }
}

bool SplitPlan::Find(HeadlessKlipra& engine, SplitPoints& points) const {
    points = {};
    bool isFound = false;
    if (m_arguments.Has(Option::Quiet)) {
        isFound = FindQuiet(engine, points);
    } else if (m_arguments.Has(Option::Every)) {
        isFound = FindEvery(engine, points);
    } else if (m_arguments.Has(Option::At)) {
        isFound = FindListed(engine, points);
    } else {
        isFound = FindPositions(engine, points);
    }
    if (isFound && points.seconds.size() >= kMostPieces) {
        ReportError(engine.Path(),
                    "would be split into more than " + std::to_string(kMostPieces) + " pieces");
        return false;
    }
    points.titles.resize(points.seconds.size() + 1);
    return isFound;
}

bool SplitPlan::FindPositions(const HeadlessKlipra& engine, SplitPoints& points) const {
    std::vector<AskedPlace> places;
    for (const std::string& text : PlaceOperands(m_arguments)) {
        const double seconds = TimeOperand(text).In(engine.LengthInSeconds());
        places.push_back({text, seconds, engine.ToPosition(seconds)});
        if (!IsInside(engine, places.back().position)) {
            ReportError(engine.Path(), Quoted(text) + " does not lie between the beginning and " +
                                           EndText(engine));
            return false;
        }
    }
    std::ranges::sort(places, {}, &AskedPlace::seconds);
    const auto twice = std::ranges::adjacent_find(places, {}, &AskedPlace::position);
    if (twice != places.end()) {
        ReportError(engine.Path(), Quoted(twice->text) + " and " + Quoted(std::next(twice)->text) +
                                       " are the same position");
        return false;
    }
    std::ranges::transform(places, std::back_inserter(points.seconds), &AskedPlace::seconds);
    return true;
}

bool SplitPlan::FindQuiet(const HeadlessKlipra& engine, SplitPoints& points) const {
    std::vector<QuietStretch> stretches;
    if (!FindQuietPlaces(engine, QuietThresholds::From(m_arguments), stretches)) {
        return false;
    }
    std::vector<double> middles;
    for (const QuietStretch& stretch : stretches) {
        if (stretch.begin != 0 && !stretch.lastsToTheEnd) {
            middles.push_back(engine.ToSeconds((stretch.begin + stretch.end) / 2));
        }
    }
    points.seconds = WithoutShortPieces(middles, engine.LengthInSeconds(),
                                        DurationOption(m_arguments, Option::LeastPiece, 0.0));
    return true;
}

bool SplitPlan::FindEvery(const HeadlessKlipra& engine, SplitPoints& points) const {
    const double every = DurationOption(m_arguments, Option::Every, 1.0);
    for (std::size_t i = 1; i <= kMostPieces; ++i) {
        const double place = static_cast<double>(i) * every;
        if (place >= engine.LengthInSeconds() || engine.ToPosition(place) >= engine.lastPosition) {
            break;
        }
        points.seconds.push_back(place);
    }
    if (!points.seconds.empty() && engine.ToPosition(every) == 0) {
        ReportError(engine.Path(), "pieces of " + SecondsText(every) + " s would hold no audio");
        return false;
    }
    return true;
}

bool SplitPlan::FindListed(const HeadlessKlipra& engine, SplitPoints& points) const {
    const std::string list = *m_arguments.Value(Option::At);
    std::vector<ListedPlace> places;
    if (!ReadList(list, places)) {
        return false;
    }
    points.titles = {""};
    for (const ListedPlace& place : places) {
        const unsigned long long position = engine.ToPosition(place.seconds);
        constexpr double kRounded = 1.0; // seconds that the end of a region may lie behind the end
        if (place.isEnd && position >= engine.lastPosition &&
            place.seconds <= engine.LengthInSeconds() + kRounded) {
            continue;
        }
        if (position >= engine.lastPosition) {
            ReportListError(list,
                            {place.line, SecondsText(place.seconds) + " s does not lie before " +
                                             EndText(engine) + " of " + Quoted(engine.Path())});
            return false;
        }
        if (position == 0 && points.seconds.empty()) {
            points.titles.back() = place.title;
            continue;
        }
        if (!points.seconds.empty() && position == engine.ToPosition(points.seconds.back())) {
            ReportListError(list, {place.line, "the same position as the one before"});
            return false;
        }
        points.seconds.push_back(place.seconds);
        points.titles.push_back(place.title);
    }
    return true;
}
