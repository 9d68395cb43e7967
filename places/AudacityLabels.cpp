#include "places/AudacityLabels.h"

#include "places/PrintableText.h"

#include <cmath>
#include <optional>

namespace {

constexpr double kTouching = 1e-6; // seconds: the last digit that is written

struct Label {
    double begin = 0.0;
    double end = 0.0;
    std::string title;
};

std::optional<Label> ParseLabel(const std::string& line) {
    const std::vector<std::string> parts = SplitAt(line, '\t');
    if (parts.size() < 2) {
        return std::nullopt;
    }
    const auto begin = ParseNumber(parts[0]);
    const auto end = ParseNumber(parts[1]);
    if (!begin || !end) {
        return std::nullopt;
    }
    return Label{*begin, *end, parts.size() > 2 ? parts[2] : ""};
}

} // namespace

bool IsCommentOfLabels(const std::string& line) {
    return line.starts_with('\\');
}

bool IsLabel(const std::string& line) {
    return ParseLabel(line).has_value();
}

std::vector<ListedPlace> ParseLabels(const std::vector<TextLine>& lines) {
    std::vector<ListedPlace> places;
    for (const TextLine& line : lines) {
        if (line.IsBlank() || IsCommentOfLabels(line.text)) {
            continue;
        }
        const std::optional<Label> label = ParseLabel(line.text);
        if (!label) {
            throw ListError(line.number,
                            Excerpt(line.text) + " is not begin, end and title with tabs");
        }
        if (label->end < label->begin) {
            throw ListError(line.number, "the label ends before it begins");
        }
        if (!places.empty() && places.back().isEnd &&
            std::abs(places.back().seconds - label->begin) <= kTouching) {
            places.pop_back();
        }
        places.push_back({label->begin, label->title, line.number, false});
        if (label->end > label->begin) {
            places.push_back({label->end, "", line.number, true});
        }
    }
    return places;
}

std::string LabelsText(const std::vector<double>& places, const std::string& file) {
    const std::string end = file.empty() ? "" : std::string("\t").append(Printable(file));
    std::string text;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const std::string seconds = SecondsText(places[i]);
        text.append(seconds).append("\t").append(seconds).append("\t");
        text.append(std::to_string(i + 1)).append(end).append("\n");
    }
    return text;
}
