#pragma once

#include "engine/EditFailure.h"
#include "engine/FormatType.h"

#include <string>
#include <vector>

/// The names of so many pieces: the last % of the file's name becomes the number, with leading
/// zeros to the width of the largest; without a % it stands before the extension, behind a hyphen.
std::vector<std::string> PieceNames(const std::string& path, std::size_t count);

/// Cuts a file at some places into one new file for each piece. Existing files are replaced when
/// all pieces are complete.
/// @param bounds  seconds, ascending: the beginning, where to cut, and the end
/// @param names   one for each piece; none may be the source
/// @return false after a failure, of which `failure` tells; every file is then as it was, unless it
///         was the last step, the renaming, that failed
[[nodiscard]] bool WritePieces(const std::string& source, FormatType format,
                               const std::vector<double>& bounds,
                               const std::vector<std::string>& names, EditFailure& failure);
