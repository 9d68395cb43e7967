#pragma once

#include <functional>
#include <string>
#include <vector>

/// Writes new files.
/// @param paths  where to write them, files that hold nothing yet
/// @return false after a failure, which has been reported or stands in CutFailure
using OutputWriter = std::function<bool(const std::vector<std::string>& paths)>;

/// Writes what is cut from a file: all outputs or none. Shows how far it is, and leaves nothing
/// behind when the program is interrupted.
/// @param source           where the audio comes from; refused as an output
/// @param names            the outputs; existing files are replaced when all are complete
/// @param replacesNothing  an existing file is a failure
/// @return false after a failure, which has been reported: every output is as it was
[[nodiscard]] bool WriteOutputs(const std::string& source, const std::vector<std::string>& names,
                                bool replacesNothing, const OutputWriter& write);

/// The writing alone, to paths that stand for the outputs of these names.
/// @return false after a failure, which has been reported
[[nodiscard]] bool WriteWithProgress(const std::string& source,
                                     const std::vector<std::string>& names,
                                     const std::vector<std::string>& paths,
                                     const OutputWriter& write);
