#include "cli/HelpText.h"

#include "places/TextLines.h"

#include <algorithm>

namespace {

constexpr std::size_t kLineWidth = 80;
constexpr std::size_t kIndent = 4;
constexpr char kProgram[] = "klipra-cli";

// A paragraph in lines, each so many columns from the left.
std::string Wrapped(const std::string& text, std::size_t indent) {
    std::string result;
    std::string line;
    for (const std::string& word : SplitAt(text, ' ')) {
        if (!line.empty() && indent + line.size() + 1 + word.size() > kLineWidth) {
            result += Concat({std::string(indent, ' '), line, "\n"});
            line.clear();
        }
        line += Concat({line.empty() ? "" : " ", word});
    }
    return Concat({result, std::string(indent, ' '), line, "\n"});
}

std::string Sentence(std::string text) {
    text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    return text.ends_with('.') ? text : text + ".";
}

std::string OptionText(const OptionInfo& option) {
    return Concat({"  ", option.name, option.value == nullptr ? "" : " ",
                   option.value == nullptr ? "" : option.value, "\n",
                   Wrapped(Sentence(option.summary), 2 * kIndent)});
}

std::string TopicText(const Topic& topic) {
    std::string text = Concat({"\n", topic.heading, ":\n"});
    for (const char* paragraph : topic.paragraphs) {
        text += Wrapped(paragraph, 2);
    }
    return text;
}

} // namespace

std::string UsageText(const CommandInfo& command) {
    std::string text;
    for (const char* form : command.forms) {
        text += Concat(
            {text.empty() ? "Usage: " : "       ", kProgram, " ", command.name, " ", form, "\n"});
    }
    return text;
}

std::string ProgramUsageText() {
    std::string names;
    for (const CommandInfo& command : Commands()) {
        names += Concat({names.empty() ? "" : ", ", command.name});
    }
    return Concat({"Usage: ", kProgram, " COMMAND ..., where COMMAND is one of ", names, "\n"});
}

std::string HelpText(const CommandInfo& command) {
    std::string text = Concat({UsageText(command), "\n", Wrapped(Sentence(command.summary), 0)});
    for (const char* paragraph : command.details) {
        text += Concat({"\n", Wrapped(paragraph, 0)});
    }
    text += "\nOptions:\n";
    for (const Option option : command.options) {
        text += OptionText(FindOption(option));
    }
    for (const Example& example : command.examples) {
        text += Concat({"\n", Wrapped(example.purpose, 0), "  ", example.line, "\n"});
    }
    return text;
}

std::string ProgramHelpText() {
    std::string text = "Cuts MP3 and WAV files without re-encoding; they are only read.\n\n";
    for (const CommandInfo& command : Commands()) {
        for (const char* form : command.forms) {
            text += Concat({"  ", kProgram, " ", command.name, " ", form, "\n"});
        }
        text += Wrapped(Sentence(command.summary), 2 * kIndent);
    }
    text += Concat({"  ", kProgram, " --help, -h, --version, -V\n\n",
                    Wrapped(Concat({"More about a command: ", kProgram, " help COMMAND."}), 0)});
    for (const Topic& topic : Topics()) {
        text += TopicText(topic);
    }
    return text;
}
