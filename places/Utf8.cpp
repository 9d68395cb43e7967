#include "places/Utf8.h"

#include <algorithm>
#include <iconv.h>
#include <memory>

namespace {

// What follows a first byte: how many bytes, and the least code point that is not to be written
// shorter.
struct Sequence {
    std::size_t size;
    unsigned int leastCode;
};

Sequence SequenceOf(unsigned char first) {
    if (first < 0x80) {
        return {1, 0};
    }
    if (first >= 0xC0 && first < 0xE0) {
        return {2, 0x80};
    }
    if (first >= 0xE0 && first < 0xF0) {
        return {3, 0x800};
    }
    return first >= 0xF0 && first < 0xF8 ? Sequence{4, 0x10000} : Sequence{0, 0};
}

std::size_t EndOfCharacters(const std::string& text, std::size_t most) {
    std::size_t end = 0;
    while (end < text.size()) {
        const std::size_t size = Utf8CharacterSize(text, end);
        if (size == 0 || end + size > most) {
            break;
        }
        end += size;
    }
    return end;
}

} // namespace

std::size_t Utf8CharacterSize(const std::string& text, std::size_t offset) {
    const auto first = static_cast<unsigned char>(text[offset]);
    const auto [size, leastCode] = SequenceOf(first);
    if (size < 2 || offset + size > text.size()) {
        return size == 1 ? 1 : 0;
    }
    unsigned int code = first & (0x7FU >> size);
    for (std::size_t i = 1; i < size; ++i) {
        const auto byte = static_cast<unsigned char>(text[offset + i]);
        if ((byte & 0xC0U) != 0x80U) {
            return 0;
        }
        code = code << 6U | (byte & 0x3FU);
    }
    const bool isSurrogate = code >= 0xD800 && code < 0xE000;
    return code < leastCode || code > 0x10FFFF || isSurrogate ? 0 : size;
}

bool IsUtf8(const std::string& text) {
    return EndOfCharacters(text, text.size()) == text.size();
}

bool ToUtf8(std::string& text) {
    constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";
    if (IsUtf8(text)) {
        text.erase(0, text.starts_with(kByteOrderMark) ? sizeof kByteOrderMark - 1 : 0);
        return true;
    }
    // As Windows writes it, which is where such lists come from.
    const std::unique_ptr<void, int (*)(iconv_t)> converter(iconv_open("UTF-8", "CP932"),
                                                            iconv_close);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the answer that iconv_open has for a failure
    if (converter.get() == reinterpret_cast<iconv_t>(-1)) {
        return false;
    }
    std::string result(text.size() * 3, '\0'); // no character of it takes more
    char* from = text.data();
    char* to = result.data();
    std::size_t left = text.size();
    std::size_t room = result.size();
    if (iconv(converter.get(), &from, &left, &to, &room) != 0) {
        return false;
    }
    result.resize(result.size() - room);
    text = result;
    return true;
}

std::string ShortenedUtf8(const std::string& text, std::size_t mostBytes) {
    return text.substr(0, EndOfCharacters(text, mostBytes));
}
