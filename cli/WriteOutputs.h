#pragma once

#include <functional>
#include <string>
#include <vector>

/// Writes one of several new files.
/// @param index  of the output, from 0
/// @param path   where to write it
/// @return false after a failure, which has been shown or stands in CutFailure
using OutputWriter = std::function<bool(std::size_t index, const std::string& path)>;

/// Writes what is cut from a file: all outputs or none. Shows how far it is, and leaves nothing
/// behind when the program is interrupted.
/// @param source   where the audio comes from; refused as an output
/// @param names    paths of the outputs; an existing file is replaced when all are complete
/// @return false after a failure, which has been reported: every output is as it was
bool WriteOutputs(const std::string& source, const std::vector<std::string>& names,
                  const OutputWriter& write);
