#pragma once

#include <string>

/// Copies a file; an existing file takes its new content at once and whole, and keeps its
/// permissions. On the disk when this returns.
/// Tells the CutProgress that is installed how far it is, and can be cancelled by it.
/// @return false when it cannot be copied, both paths mean the same file, or the first one changes
///         meanwhile: the second is as it was then, and CutFailure tells why
[[nodiscard]] bool CopyFileReplacing(const std::string& from, const std::string& to);
