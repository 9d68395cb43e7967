#include "cli/Completions.h"

#include "cli/CommandTable.h"
#include "places/TextLines.h"

#include <algorithm>
#include <cctype>

namespace {

const char* KindName(ValueKind kind) {
    switch (kind) {
    case ValueKind::Source:
        return "source";
    case ValueKind::Output:
        return "output";
    case ValueKind::Folder:
        return "folder";
    case ValueKind::Picture:
        return "picture";
    case ValueKind::List:
        return "list";
    case ValueKind::Format:
        return "format";
    case ValueKind::Command:
        return "command";
    case ValueKind::None:
    case ValueKind::Text:
        break;
    }
    return "text";
}

// In single quotes, for any of the shells.
std::string ShellQuoted(const std::string& text) {
    std::string result = "'";
    for (const char c : text) {
        result += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return result + "'";
}

// A summary as a list of choices shows it: its first clause.
std::string Brief(const OptionInfo& option) {
    const std::string text = option.summary == nullptr ? "tell about this command" : option.summary;
    return text.substr(0, text.find_first_of(":;,."));
}

template <typename Text>
std::string ForEachCommand(Text text) {
    std::string result;
    for (const CommandInfo& command : Commands()) {
        result += text(command);
    }
    return result;
}

std::string OptionNames(const CommandInfo& command) {
    std::string names;
    for (const OptionInfo& option : Options()) {
        if (std::ranges::find(command.options, option.option) != command.options.end()) {
            names += Concat({names.empty() ? "" : " ", option.name});
        }
    }
    return names;
}

std::string OperandKinds(const CommandInfo& command) {
    std::string kinds;
    for (const ValueKind kind : command.operands) {
        kinds += Concat({kinds.empty() ? "" : " ", KindName(kind)});
    }
    return kinds;
}

std::string ZshAction(ValueKind kind) {
    return Concat({"_klipra_cli_", KindName(kind)});
}

std::string ZshOption(const OptionInfo& option) {
    std::string brief = Brief(option);
    std::erase_if(brief, [](char c) { return c == '[' || c == ']' || c == ':'; });
    std::string argument = option.name;
    if (option.value != nullptr) {
        argument += "=";
    }
    argument += Concat({"[", brief, "]"});
    if (option.value != nullptr) {
        argument += Concat({":", option.value, ":", ZshAction(option.kind)});
    }
    return Concat({"            ", ShellQuoted(argument), " \\\n"});
}

std::string ZshFunction(const CommandInfo& command) {
    std::string text = Concat({"    ", command.name, ")\n        _arguments -s -S \\\n"});
    for (const OptionInfo& option : Options()) {
        if (std::ranges::find(command.options, option.option) != command.options.end()) {
            text += ZshOption(option);
        }
    }
    for (std::size_t i = 0; i < command.operands.size(); ++i) {
        const bool isRest =
            i + 1 == command.operands.size() && command.mostOperands > command.operands.size();
        const char* const kind = KindName(command.operands[i]);
        const std::string argument = Concat(
            {isRest ? "*" : std::to_string(i + 1), ":", kind, ":", ZshAction(command.operands[i])});
        text += Concat({"            ", ShellQuoted(argument),
                        i + 1 < command.operands.size() ? " \\\n" : "\n"});
    }
    return text + "        ;;\n";
}

std::string FishOption(const CommandInfo& command, const OptionInfo& option) {
    const std::string name = option.name;
    const bool isLong = name.starts_with("--");
    std::string line =
        Concat({"complete -c klipra-cli -n '__fish_seen_subcommand_from ", command.name, "' ",
                isLong ? "-l " : "-s ", name.substr(isLong ? 2 : 1)});
    if (option.kind == ValueKind::Format) {
        line += Concat({" -x -a ", ShellQuoted(FormatWords())});
    } else if (option.value != nullptr) {
        line += option.kind == ValueKind::List ? " -r -F" : " -x";
    }
    return Concat({line, " -d ", ShellQuoted(Brief(option)), "\n"});
}

} // namespace

std::string CommandWords() {
    return ForEachCommand([](const CommandInfo& command) {
               return Concat({command.name, " "});
           }) +
           "--help -h --version -V";
}

std::string BashOptions() {
    return ForEachCommand([](const CommandInfo& command) {
        return Concat({"[", command.name, "]=", ShellQuoted(OptionNames(command)), " "});
    });
}

std::string BashOperands() {
    return ForEachCommand([](const CommandInfo& command) {
        return Concat({"[", command.name, "]=", ShellQuoted(OperandKinds(command)), " "});
    });
}

std::string BashValueOptions() {
    std::string text;
    for (const OptionInfo& option : Options()) {
        if (option.value != nullptr) {
            text += Concat({"[", option.name, "]=", KindName(option.kind), " "});
        }
    }
    return text;
}

std::string ZshCommands() {
    return ForEachCommand([](const CommandInfo& command) {
        return Concat(
            {"        ", ShellQuoted(Concat({command.name, ":", command.summary})), "\n"});
    });
}

std::string ZshFunctions() {
    return ForEachCommand(ZshFunction);
}

std::string FishLines() {
    return ForEachCommand([](const CommandInfo& command) {
        std::string text = Concat({"complete -c klipra-cli -n __fish_use_subcommand -x -a ",
                                   command.name, " -d ", ShellQuoted(command.summary), "\n"});
        for (const OptionInfo& option : Options()) {
            if (std::ranges::find(command.options, option.option) != command.options.end()) {
                text += FishOption(command, option);
            }
        }
        return text;
    });
}

std::string FormatWords() {
    std::string words;
    for (const char* name : FormatNames()) {
        words += Concat({words.empty() ? "" : " ", name});
    }
    return words;
}
