// Writes a file of the installation: a template with what the command table has to say in it.
// usage: klipra-cli-fill TEMPLATE >FILE

#include "cli/Completions.h"
#include "cli/ManualPage.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

namespace {

struct Part {
    const char* mark;
    std::string (*text)();
};

constexpr Part kParts[] = {
    {"@VERSION@", [] { return std::string(KLIPRA_VERSION); }},
    {"@MANUAL_SYNOPSIS@", ManualSynopsis},
    {"@MANUAL_COMMANDS@", ManualCommands},
    {"@MANUAL_TOPICS@", ManualTopics},
    {"@MANUAL_EXAMPLES@", ManualExamples},
    {"@COMMAND_WORDS@", CommandWords},
    {"@FORMAT_WORDS@", FormatWords},
    {"@BASH_OPTIONS@", BashOptions},
    {"@BASH_OPERANDS@", BashOperands},
    {"@BASH_VALUE_OPTIONS@", BashValueOptions},
    {"@ZSH_COMMANDS@", ZshCommands},
    {"@ZSH_FUNCTIONS@", ZshFunctions},
    {"@FISH_LINES@", FishLines},
};

// A mark alone on its line goes with the line's end, which the text brings along.
void Fill(std::string& page, const Part& part) {
    const std::string mark = part.mark;
    std::string text = part.text();
    if (text.ends_with('\n')) {
        text.pop_back();
    }
    for (std::size_t place = 0; (place = page.find(mark, place)) != std::string::npos;) {
        page.replace(place, mark.size(), text);
        place += text.size();
    }
}

} // namespace

int main(int argc, char** argv) {
    std::ifstream file(argc == 2 ? argv[1] : "");
    std::string page{std::istreambuf_iterator<char>(file), {}};
    if (page.empty()) {
        std::fputs("usage: klipra-cli-fill TEMPLATE >FILE\n", stderr);
        return 1;
    }
    for (const Part& part : kParts) {
        Fill(page, part);
    }
    return std::fputs(page.c_str(), stdout) < 0 || std::fflush(stdout) != 0 ? 1 : 0;
}
