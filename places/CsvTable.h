#pragma once

#include "places/PlaceList.h"

/// Whether a line names columns, one of which is "seconds".
bool IsHeaderOfCsv(const std::string& line);

/// The rows of a table with a header (RFC 4180): its columns "seconds" and, where there is one,
/// "title". Throws ListError.
[[nodiscard]] std::vector<ListedPlace> ParseCsv(const std::string& text);

/// A place to be written: where it is in the decoded audio.
struct CsvPlace {
    unsigned long long bytes = 0;
    double seconds = 0.0;
};

/// The first line of a table of places, and a row for each.
/// @param file  where it is not empty: a further, last column
std::string CsvHeader(bool hasFile);
std::string CsvRows(const std::vector<CsvPlace>& places, const std::string& file = "");
