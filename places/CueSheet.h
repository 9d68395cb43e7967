#pragma once

#include "places/PlaceList.h"
#include "places/TextLines.h"

/// Whether a line can begin a CUE sheet.
bool IsCueCommand(const std::string& line);

/// The beginnings of the tracks, INDEX 01, with their titles. Throws ListError.
[[nodiscard]] std::vector<ListedPlace> ParseCueSheet(const std::vector<TextLine>& lines);

/// The most tracks that a sheet can have.
inline constexpr std::size_t kMostCueTracks = 99;

/// A sheet whose first track begins at the beginning, and a further one at each place; one at the
/// beginning is the first.
/// @param file    the audio's file name, UTF-8
/// @param places  seconds, ascending
/// @return empty when there would be more tracks than a sheet can have
std::string CueSheetText(const std::string& file, bool isWav, const std::vector<double>& places);
