#pragma once

#include <optional>
#include <string>
#include <vector>

/// Quiet places, to be written to a list.
struct ExportedPlaces {
    std::string audioName; ///< of the file that they lie in, without its folder
    bool isWav = false;
    std::vector<unsigned long long> positions{}; ///< bytes, ascending
    std::vector<double> seconds{};               ///< of each
};

/// The extensions of the lists, which tell their kinds: a CUE sheet, labels of Audacity, a table.
const std::vector<std::string>& PlacesExtensions();

/// The list, of the kind that a path's extension stands for.
/// @return empty where the places are too many for a CUE sheet; none for another extension
[[nodiscard]] std::optional<std::string> PlacesText(const std::string& path,
                                                    const ExportedPlaces& places);
