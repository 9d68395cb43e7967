#include "mpeg/Tag.h"

#include "mpeg/MPAStream.h"

#include <algorithm>
#include <charconv>
#include <cstring>

CTag::CTag(CMPAStream* stream, const char* name, bool appended, long long offset, unsigned int size)
    : m_stream(stream), m_offset(offset), m_size(size), m_isAppended(appended), m_name(name) {
}

CTag::~CTag() = default;

void CTag::SetVersion(unsigned char major, unsigned char minor, unsigned char release) {
    m_version = static_cast<float>(major) + static_cast<float>(minor) * 0.1F +
                static_cast<float>(release) * 0.01F;
}

bool CTag::HasText(CMPAStream* stream, long long offset, const char* text, bool reverse) {
    const auto length = static_cast<unsigned int>(std::strlen(text));
    return std::memcmp(stream->ReadBytes(length, offset, false, reverse), text, length) == 0;
}

float CTag::ParseDecimal(const std::string& text) {
    const std::size_t begin = text.find_first_not_of(" \t\n\v\f\r");
    if (begin == std::string::npos) {
        return 0.0F;
    }
    // from_chars knows no plus sign, and the names of infinity and not-a-number are no digits.
    const std::size_t number = begin + (text[begin] == '+' ? 1 : 0);
    const std::size_t length = text.find_first_not_of("0123456789.-", number) - number;
    double value = 0.0;
    std::from_chars(text.data() + number,
                    text.data() + number + std::min(length, text.size() - number), value,
                    std::chars_format::fixed);
    return static_cast<float>(value);
}

std::string CTag::ReadText(CMPAStream* stream, long long offset, unsigned int size, bool reverse) {
    return {reinterpret_cast<const char*>(stream->ReadBytes(size, offset, false, reverse)), size};
}
