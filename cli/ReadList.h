#pragma once

#include "places/PlaceList.h"

#include <string>
#include <vector>

/// Reads a list of places from a file, or from standard input where the path is "-".
/// @return false after a failure, which has been reported
[[nodiscard]] bool ReadList(const std::string& path, std::vector<ListedPlace>& places);

/// Tells what is wrong with a list.
void ReportListError(const std::string& path, const ListError& error);
