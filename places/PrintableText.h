#pragma once

#include <string>

/// A text that commands no terminal: control characters as \n, \t or \x1b, and so are bytes that
/// are no UTF-8.
std::string Printable(const std::string& text);

/// The same in quotes, as messages name a file.
std::string Quoted(const std::string& text);

/// The same, shortened where it is long.
std::string Excerpt(const std::string& text);
