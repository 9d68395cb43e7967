#include "places/CueSheet.h"

#include "places/PrintableText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <strings.h>

namespace {

constexpr unsigned int kFramesPerSecond = 75;
constexpr unsigned int kSixty = 60; // seconds in a minute

constexpr const char* kCommands[] = {"CATALOG",    "CDTEXTFILE", "FILE",    "FLAGS",  "INDEX",
                                     "ISRC",       "PERFORMER",  "POSTGAP", "PREGAP", "REM",
                                     "SONGWRITER", "TITLE",      "TRACK"};

bool IsSame(const std::string& a, const char* b) {
    return strcasecmp(a.c_str(), b) == 0;
}

// The first word of a text, which is taken out of it with the blanks around it.
std::string TakeWord(std::string& text) {
    constexpr char kBlanks[] = " \t";
    text.erase(0, text.find_first_not_of(kBlanks));
    std::string word = text.substr(0, text.find_first_of(kBlanks));
    text.erase(0, word.size());
    text.erase(0, text.find_first_not_of(kBlanks));
    text.erase(text.find_last_not_of(kBlanks) + 1);
    return word;
}

// There is no way to write a quotation mark inside of them.
std::string Unquoted(const std::string& text) {
    const bool isQuoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

/// Follows the commands of a sheet from line to line.
class CueReader {
public:
    std::vector<ListedPlace> Read(const std::vector<TextLine>& lines) {
        for (const TextLine& line : lines) {
            std::string rest = line.text;
            const std::string command = TakeWord(rest);
            if (IsSame(command, "TRACK")) {
                EndTrack();
                m_track = {.line = line.number};
                m_isInTrack = true;
            } else if (IsSame(command, "TITLE") && m_isInTrack) {
                m_track.title = Unquoted(rest);
            } else if (IsSame(command, "INDEX")) {
                ReadIndex(rest, line.number);
            } else if (!command.empty() && !IsCueCommand(line.text)) {
                throw ListError(line.number, Excerpt(command) + " is no command of a CUE sheet");
            }
        }
        EndTrack();
        return m_places;
    }

private:
    void EndTrack() {
        if (m_isInTrack && !m_hasIndex) {
            throw ListError(m_track.line, "the track has no INDEX 01");
        }
        if (m_isInTrack) {
            m_places.push_back(m_track);
        }
        m_hasIndex = false;
    }

    void ReadIndex(std::string text, std::size_t line) {
        const std::string number = TakeWord(text);
        if (!m_isInTrack) {
            throw ListError(line, "an INDEX stands before the first TRACK");
        }
        const std::vector<std::string> parts = SplitAt(text, ':');
        if (parts.size() != 3 || !ParseDigits(number)) {
            throw ListError(line, Excerpt(text) + " is not minutes:seconds:frames");
        }
        const auto minutes = ParseDigits(parts[0]);
        const auto seconds = ParseDigits(parts[1]);
        const auto frames = ParseDigits(parts[2]);
        if (!minutes || !seconds || !frames || *seconds >= kSixty || *frames >= kFramesPerSecond) {
            throw ListError(line, Excerpt(text) + " is not minutes:seconds:frames, with seconds "
                                                  "below 60 and frames below 75");
        }
        if (ParseDigits(number) == 1U) {
            m_track.seconds = static_cast<double>(*minutes) * kSixty + *seconds +
                              static_cast<double>(*frames) / kFramesPerSecond;
            m_track.line = line;
            m_hasIndex = true;
        }
    }

    std::vector<ListedPlace> m_places;
    ListedPlace m_track; // the one that is being read
    bool m_isInTrack = false;
    bool m_hasIndex = false;
};

std::string Track(std::size_t number, unsigned long long frames) {
    const unsigned long long seconds = frames / kFramesPerSecond;
    std::array<char, 100> text{};
    std::snprintf(text.data(), text.size(),
                  "  TRACK %02zu AUDIO\n    INDEX 01 %02llu:%02llu:%02llu\n", number,
                  seconds / kSixty, seconds % kSixty, frames % kFramesPerSecond);
    return text.data();
}

} // namespace

bool IsCueCommand(const std::string& line) {
    std::string rest = line;
    const std::string word = TakeWord(rest);
    return std::ranges::any_of(kCommands, [&](const char* name) { return IsSame(word, name); });
}

std::vector<ListedPlace> ParseCueSheet(const std::vector<TextLine>& lines) {
    return CueReader().Read(lines);
}

std::string CueSheetText(const std::string& file, bool isWav, const std::vector<double>& places) {
    std::vector<unsigned long long> tracks = {0};
    for (const double seconds : places) {
        const auto frames =
            static_cast<unsigned long long>(std::llround(seconds * kFramesPerSecond));
        if (frames > tracks.back()) {
            tracks.push_back(frames);
        }
    }
    if (tracks.size() > kMostCueTracks) {
        return "";
    }
    std::string name = Printable(file); // whatever a file is called, the sheet is a text
    std::ranges::replace(name, '"', '_');
    std::string text = "FILE \"" + name + "\" " + (isWav ? "WAVE" : "MP3") + "\n";
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        text += Track(i + 1, tracks[i]);
    }
    return text;
}
