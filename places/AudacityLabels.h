#pragma once

#include "places/PlaceList.h"
#include "places/TextLines.h"

// Labels as Audacity exports them: a line with begin, end and title, which tabs part. A line that
// begins with a backslash belongs to the one before it, and tells of frequencies.

bool IsCommentOfLabels(const std::string& line);
bool IsLabel(const std::string& line);

/// The begins of labels with their titles, and the ends where the next label does not begin there.
/// Throws ListError.
[[nodiscard]] std::vector<ListedPlace> ParseLabels(const std::vector<TextLine>& lines);

/// A label of no length at each place, with its number for a title.
/// @param places  seconds, ascending
/// @param file    where it is not empty: a further, last column
std::string LabelsText(const std::vector<double>& places, const std::string& file = "");
