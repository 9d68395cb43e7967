#pragma once

#include <string>

/// The bytes of the UTF-8 character that begins at an offset, 1 to 4 (RFC 3629); 0 where none does.
std::size_t Utf8CharacterSize(const std::string& text, std::size_t offset);

bool IsUtf8(const std::string& text);

/// A text of any encoding that lists come in as UTF-8: without a byte order mark; what is no UTF-8
/// is taken for Shift_JIS.
/// @return whether it is either
bool ToUtf8(std::string& text);

/// As much of a UTF-8 text from its beginning as fits into so many bytes, in whole characters.
std::string ShortenedUtf8(const std::string& text, std::size_t mostBytes);
