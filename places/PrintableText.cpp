#include "places/PrintableText.h"

#include "places/TextLines.h"
#include "places/Utf8.h"

#include <array>
#include <cstdio>
#include <cstring>

namespace {

std::string Escaped(unsigned char byte) {
    constexpr char kMeanings[] = "\a\b\t\n\v\f\r";
    constexpr char kLetters[] = "abtnvfr";
    if (const char* found = byte == 0 ? nullptr : std::strchr(kMeanings, byte)) {
        return std::string("\\") + kLetters[found - kMeanings];
    }
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), "\\x%02x", byte);
    return text.data();
}

// U+0080 to U+009F, which are C2 80 to C2 9F, command terminals too.
bool IsControl(const std::string& text, std::size_t i, std::size_t size) {
    const auto byte = static_cast<unsigned char>(text[i]);
    return byte < 0x20 || byte == 0x7F ||
           (size == 2 && byte == 0xC2 && static_cast<unsigned char>(text[i + 1]) < 0xA0);
}

} // namespace

std::string Printable(const std::string& text) {
    std::string result;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t size = Utf8CharacterSize(text, i);
        if (size != 0 && !IsControl(text, i, size)) {
            result += text.substr(i, size);
            i += size;
            continue;
        }
        for (const std::size_t end = i + (size == 0 ? 1 : size); i < end; ++i) {
            result += Escaped(static_cast<unsigned char>(text[i]));
        }
    }
    return result;
}

std::string Quoted(const std::string& text) {
    return Concat({"'", Printable(text), "'"});
}

std::string Excerpt(const std::string& text) {
    constexpr std::size_t kMostBytes = 40;
    const std::string shortened = ShortenedUtf8(text, kMostBytes);
    return Quoted(shortened.size() < text.size() ? shortened + "..." : text);
}
