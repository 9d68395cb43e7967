#include "cli/Json.h"

#include "places/Utf8.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <cstring>

Json BytesToJson(const std::string& bytes) {
    std::string utf8;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            utf8 += c;
        } else {
            utf8 += static_cast<char>(0xC0 | byte >> 6);
            utf8 += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return utf8;
}

Json PathToJson(const std::string& path) {
    return IsUtf8(path) ? Json(path) : BytesToJson(path);
}

Json FloatToJson(float value) {
    std::array<char, 32> digits{};
    std::to_chars(digits.data(), digits.data() + digits.size(), value);
    double shortest = 0.0;
    std::from_chars(digits.data(), digits.data() + std::strlen(digits.data()), shortest);
    return shortest;
}

std::string JsonText(const Json& value) {
    constexpr char kShortEscapes[] = "bfnrt";
    constexpr char kMeanings[] = "\b\f\n\r\t";
    const std::string text = value.dump(-1, ' ', true);
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        result += text[i];
        if (text[i] != '\\') {
            continue;
        }
        ++i;
        const char* found = std::strchr(kShortEscapes, text[i]);
        if (found == nullptr) {
            result += text[i];
            continue;
        }
        std::array<char, 8> escape{};
        std::snprintf(escape.data(), escape.size(), "u%04x", kMeanings[found - kShortEscapes]);
        result += escape.data();
    }
    return result;
}
