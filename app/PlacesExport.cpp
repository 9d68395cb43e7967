#include "app/PlacesExport.h"

#include "engine/Klipra.h"
#include "places/AudacityLabels.h"
#include "places/CsvTable.h"
#include "places/CueSheet.h"

#include <algorithm>
#include <cctype>

const std::vector<std::string>& PlacesExtensions() {
    static const std::vector<std::string> extensions = {"cue", "txt", "csv"};
    return extensions;
}

std::optional<std::string> PlacesText(const std::string& path, const ExportedPlaces& places) {
    std::string extension = Klipra::ExtractExtension(path);
    std::ranges::transform(extension, extension.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (extension == "cue") {
        return CueSheetText(places.audioName, places.isWav, places.seconds);
    }
    if (extension == "txt") {
        return LabelsText(places.seconds);
    }
    if (extension != "csv") {
        return std::nullopt;
    }
    std::vector<CsvPlace> rows;
    for (std::size_t i = 0; i < places.positions.size(); ++i) {
        rows.push_back({places.positions[i], places.seconds[i]});
    }
    return CsvHeader(false) + CsvRows(rows);
}
