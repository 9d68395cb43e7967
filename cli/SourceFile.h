#pragma once

#include "engine/FormatType.h"

#include <optional>
#include <string>

/// The format of a file to be read: that of its extension, as long as its content is not plainly
/// another one.
/// @return none after a failure, which has been reported
[[nodiscard]] std::optional<FormatType> SourceFormat(const std::string& path);

/// Throws UsageError when an output's extension does not stand for a format.
void CheckOutputExtension(const std::string& output, FormatType format);
