#include "cli/OutputPattern.h"

#include "cli/Arguments.h"
#include "places/PrintableText.h"
#include "places/Utf8.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <unordered_set>

namespace {

constexpr std::string_view kTitle = "{title}";

bool IsAlphanumeric(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0;
}

// How many characters behind % belong to it, and the width that they set: 3, 03, 3d, 03d or d.
struct WidthText {
    std::size_t size = 0;
    std::size_t width = 0;
};

WidthText ParseWidth(const std::string& text) {
    const auto at = [&](std::size_t i) { return i < text.size() ? text[i] : '\0'; };
    WidthText result;
    const std::size_t zeros = at(0) == '0' ? 1 : 0;
    if (at(zeros) >= '1' && at(zeros) <= '9') {
        result = {zeros + 1, static_cast<std::size_t>(at(zeros) - '0')};
    }
    if (at(result.size) == 'd' && !IsAlphanumeric(at(result.size + 1))) {
        ++result.size;
    }
    return result;
}

std::string Replaced(std::string text, const std::string& title) {
    for (std::size_t place = 0; (place = text.find(kTitle, place)) != std::string::npos;) {
        text.replace(place, kTitle.size(), title);
        place += title.size();
    }
    return text;
}

// One part of a path with the title in it, shortened until the part can be a file's name.
std::string NamePart(const std::string& pattern, const std::string& title) {
    std::string shortened = title;
    std::string name = Replaced(pattern, shortened);
    while (name.size() > NAME_MAX && !shortened.empty()) {
        shortened = ShortenedUtf8(shortened, shortened.size() - 1);
        name = Replaced(pattern, shortened);
    }
    const bool isFolder = name == "." || name == "..";
    return isFolder ? std::string(name.size(), '_') : name;
}

} // namespace

std::string FileNamePart(const std::string& title) {
    std::string name = title;
    std::ranges::replace_if(
        name,
        [](char c) {
            const auto byte = static_cast<unsigned char>(c);
            return c == '/' || byte < 0x20 || byte == 0x7F;
        },
        '_');
    return name;
}

OutputPattern::OutputPattern(const std::string& pattern) {
    const std::size_t mark = pattern.rfind('%');
    m_hasNumber = mark != std::string::npos;
    if (!m_hasNumber && pattern.find(kTitle) == std::string::npos) {
        throw UsageError(Quoted(pattern) + " has no % for the number of a piece");
    }
    m_before = pattern.substr(0, mark);
    if (m_hasNumber) {
        m_behind = pattern.substr(mark + 1);
        const WidthText width = ParseWidth(m_behind);
        m_width = width.width;
        m_behind.erase(0, width.size);
    }
}

std::string OutputPattern::Number(std::size_t index, std::size_t count) const {
    const std::size_t width = m_width == 0 ? std::to_string(count).size() : m_width;
    const std::string number = std::to_string(index + 1);
    return std::string(width - std::min(width, number.size()), '0') + number;
}

std::string OutputPattern::Name(const std::string& number, const std::string& title) const {
    const std::string pattern = m_hasNumber ? m_before + number + m_behind : m_before;
    std::string name;
    for (std::size_t begin = 0; begin <= pattern.size();) {
        const std::size_t end = std::min(pattern.find('/', begin), pattern.size());
        const std::string part = pattern.substr(begin, end - begin);
        // A part that is the person's own is their business.
        name += part.find(kTitle) == std::string::npos ? part : NamePart(part, title);
        if (end < pattern.size()) {
            name += '/';
        }
        begin = end + 1;
    }
    return name;
}

std::vector<std::string> OutputPattern::Names(const std::vector<std::string>& titles) const {
    std::vector<std::string> names;
    std::unordered_set<std::string> known;
    for (std::size_t i = 0; i < titles.size(); ++i) {
        const std::string number = Number(i, titles.size());
        names.push_back(Name(number, titles[i].empty() ? number : FileNamePart(titles[i])));
        if (!known.insert(names.back()).second) {
            throw UsageError("two pieces would be " + Quoted(names.back()) +
                             ": give OUT a % for the number of a piece");
        }
    }
    return names;
}
