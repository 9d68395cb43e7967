#include "places/PlaceList.h"

#include "places/AudacityLabels.h"
#include "places/CsvTable.h"
#include "places/CueSheet.h"
#include "places/TextLines.h"
#include "places/Utf8.h"

#include <algorithm>

namespace {

void CheckOrder(const std::vector<ListedPlace>& places) {
    for (std::size_t i = 1; i < places.size(); ++i) {
        const ListedPlace& place = places[i];
        if (!(place.seconds > places[i - 1].seconds)) {
            throw ListError(place.line, SecondsText(place.seconds) +
                                            " s does not come after the place before it");
        }
    }
}

std::vector<ListedPlace> ParseAny(const std::string& text) {
    const std::vector<TextLine> lines = SplitLines(text);
    std::size_t first = 0; // the first line that says something
    while (first < lines.size() &&
           (lines[first].IsBlank() || IsCommentOfLabels(lines[first].text))) {
        ++first;
    }
    const std::string begin = first < lines.size() ? lines[first].text : "";
    if (IsLabel(begin)) {
        return ParseLabels(lines);
    }
    if (IsCueCommand(begin)) {
        return ParseCueSheet(lines);
    }
    if (IsHeaderOfCsv(begin)) {
        return ParseCsv(text);
    }
    throw ListError(std::min(first, lines.empty() ? 0 : lines.size() - 1) + 1,
                    "neither a CUE sheet nor Audacity labels nor CSV with a header");
}

} // namespace

std::vector<ListedPlace> ParsePlaceList(const std::string& bytes) {
    std::string text = bytes;
    if (!ToUtf8(text)) {
        throw ListError(1, "the list is neither UTF-8 nor Shift_JIS");
    }
    std::vector<ListedPlace> places = ParseAny(text);
    CheckOrder(places);
    return places;
}
