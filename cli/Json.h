#pragma once

#include <nlohmann/json.hpp>

#include <string>

/// A JSON value whose objects keep the order in which their members were added.
using Json = nlohmann::ordered_json;

/// Text of any bytes as a JSON string, a byte as the character with its number.
Json BytesToJson(const std::string& bytes);

/// A file's path as a JSON string: UTF-8 where it is that, else as above.
Json PathToJson(const std::string& path);

/// A single-precision number with no more digits than it takes to tell it from its neighbours.
Json FloatToJson(float value);

/// The JSON text on one line, in ASCII; control characters as \u00XX throughout.
std::string JsonText(const Json& value);
