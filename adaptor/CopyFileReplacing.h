#pragma once

#include <string>

/// Copies a file; an existing file takes its new content at once and whole, and keeps its
/// permissions.
/// @return false when it cannot be copied, or both paths mean the same file: the second is as it
///         was then
[[nodiscard]] bool CopyFileReplacing(const std::string& from, const std::string& to);
