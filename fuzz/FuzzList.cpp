#include "fuzz/Targets.h"
#include "places/AudacityLabels.h"
#include "places/CsvTable.h"
#include "places/CueSheet.h"
#include "places/PlaceList.h"
#include "places/Utf8.h"

#include <algorithm>

namespace {

// None where the list makes no sense, which is an answer as good as any.
std::vector<ListedPlace> Parse(const std::string& bytes) {
    try {
        return ParsePlaceList(bytes);
    } catch (const ListError&) {
        return {};
    }
}

} // namespace

void FuzzList(const FuzzInput& input) {
    const auto lines = static_cast<std::size_t>(std::ranges::count(input.File(), '\n')) + 1;
    std::vector<CsvPlace> places;
    std::vector<double> seconds;
    for (const ListedPlace& place : Parse(input.File())) {
        Require(place.seconds >= 0.0, "a place is a time");
        Require(seconds.empty() || place.seconds > seconds.back(), "places ascend");
        Require(IsUtf8(place.title), "a title is a text");
        Require(place.line >= 1 && place.line <= lines, "a line is one of the list");
        places.push_back({0, place.seconds});
        seconds.push_back(place.seconds);
    }
    // What is closer together than the last digit that is written cannot come back.
    const std::size_t read = seconds.size();
    const std::size_t csv = Parse(CsvHeader(false) + CsvRows(places)).size();
    Require(csv == read || csv == 0, "CSV comes back");
    const std::size_t labels = Parse(LabelsText(seconds)).size();
    Require(labels == read || labels == 0, "labels come back");
    Require(seconds.empty() || seconds.back() > 1e6 ||
                !Parse(CueSheetText(input.File().substr(0, 100), false, seconds)).empty() ||
                read >= kMostCueTracks,
            "a CUE sheet comes back");
}
