#include "cli/ManualPage.h"

#include "cli/CommandTable.h"
#include "places/TextLines.h"

#include <algorithm>
#include <cctype>

namespace {

std::string Lowercase(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

// A word of a usage line that stands for another one: FILE, OUT.png, L.
bool IsPlaceholder(const std::string& word) {
    return !word.empty() && std::isupper(static_cast<unsigned char>(word[0])) != 0;
}

std::string Escaped(const std::string& text) {
    std::string result;
    for (const char c : text) {
        result += c == '\\' ? "\\e" : c == '-' ? "\\-" : std::string(1, c);
    }
    return result.starts_with('.') || result.starts_with('\'') ? Concat({"\\&", result}) : result;
}

// The names that stand for operands and values, of all commands.
bool IsKnownPlaceholder(const std::string& word) {
    const auto names = [&](const char* form) {
        const std::vector<std::string> words = SplitAt(form, ' ');
        return std::ranges::find_if(words, [&](std::string name) {
                   std::erase_if(name, [](char c) { return c == '[' || c == ']' || c == '.'; });
                   return name == word && IsPlaceholder(name);
               }) != words.end();
    };
    return word == "FILEs" || std::ranges::any_of(Commands(), [&](const CommandInfo& command) {
               return std::ranges::any_of(command.forms, names);
           });
}

// A word of a paragraph, with options and placeholders in their fonts.
std::string Marked(const std::string& word) {
    const std::size_t end = std::min(word.find_last_not_of(".,:;)") + 1, word.size());
    const std::string core = word.substr(0, end);
    const std::string rest = word.substr(end);
    if (core.size() > 1 && core.starts_with('-')) {
        return Concat({"\\fB", Escaped(core), "\\fR", rest});
    }
    return IsKnownPlaceholder(core) ? Concat({"\\fI", Lowercase(core), "\\fR", rest})
                                    : Escaped(word);
}

std::string Paragraph(const std::string& text) {
    std::string result;
    for (const std::string& word : SplitAt(text, ' ')) {
        result += Concat({result.empty() ? "" : " ", Marked(word)});
    }
    return result + "\n";
}

std::string Sentence(std::string text) {
    text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
    return Paragraph(text.ends_with('.') ? text : text + ".");
}

// "[--level L]" and the like as macros that follow a macro on its line.
std::string FormMacros(const std::string& form) {
    std::string macros;
    for (std::string word : SplitAt(form, ' ')) {
        std::string ends;
        while (word.starts_with('[')) {
            macros += " Oo";
            word.erase(0, 1);
        }
        while (word.ends_with(']')) {
            ends += " Oc";
            word.pop_back();
        }
        if (word.starts_with("--")) {
            macros += Concat({" Fl ", Escaped(word.substr(1))});
        } else {
            const std::size_t dots = word.find("...");
            const bool isRepeated = dots != std::string::npos && dots > 0;
            const std::string name = word.substr(0, isRepeated ? dots : word.size());
            macros +=
                IsPlaceholder(name) ? Concat({" Ar ", Lowercase(name)}) : Concat({" No ", name});
            macros += isRepeated ? " No ..." : "";
        }
        macros += ends;
    }
    return macros;
}

std::string OptionItem(const OptionInfo& option) {
    const std::string value = option.value == nullptr ? "" : Lowercase(option.value);
    return Concat({".It Fl ", Escaped(option.name + 1), value.empty() ? "" : " Ar ", value, "\n",
                   Sentence(option.summary)});
}

std::string CommandSection(const CommandInfo& command) {
    std::string text;
    for (std::size_t i = 0; i < command.forms.size(); ++i) {
        text += Concat({".It Cm ", command.name, FormMacros(command.forms[i]), "\n"});
    }
    text += Sentence(command.summary);
    for (const char* paragraph : command.details) {
        text += Concat({".Pp\n", Paragraph(paragraph)});
    }
    return text;
}

} // namespace

std::string ManualSynopsis() {
    std::string text;
    for (const CommandInfo& command : Commands()) {
        for (const char* form : command.forms) {
            text += Concat({".Nm\n.Cm ", command.name, FormMacros(form), "\n"});
        }
    }
    return text + ".Nm\n.Fl \\-help | h | \\-version | V\n";
}

std::string ManualCommands() {
    std::string text = ".Bl -tag -width Ds\n";
    for (const CommandInfo& command : Commands()) {
        text += CommandSection(command);
    }
    text += ".El\n.Ss Options\n.Bl -tag -width Ds\n";
    for (const OptionInfo& option : Options()) {
        text += option.summary == nullptr ? "" : OptionItem(option);
    }
    return text + ".El\n";
}

std::string ManualTopics() {
    std::string text;
    for (const Topic& topic : Topics()) {
        text += Concat({".Ss ", topic.heading, "\n"});
        for (std::size_t i = 0; i < topic.paragraphs.size(); ++i) {
            text += Concat({i == 0 ? "" : ".Pp\n", Paragraph(topic.paragraphs[i])});
        }
    }
    return text;
}

std::string ManualExamples() {
    std::string text;
    for (const CommandInfo& command : Commands()) {
        for (const Example& example : command.examples) {
            text += Concat({text.empty() ? "" : ".Pp\n", Escaped(example.purpose),
                            "\n.Bd -literal -offset indent\n$ ", Escaped(example.line), "\n.Ed\n"});
        }
    }
    return text;
}
