#include "cli/CommandLine.h"

#include "cli/Commands.h"
#include "cli/HelpText.h"
#include "cli/Report.h"
#include "places/PrintableText.h"
#include "platform/SystemError.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string_view>

namespace {

// Of which only the first word counts.
constexpr std::string_view kProgramOptions[] = {"--help", "-h", "--version", "-V"};

int RefuseUsage(const std::string& problem, const std::string& usage) {
    std::fprintf(stderr, "klipra-cli: %s\n%s", problem.c_str(), usage.c_str());
    return kWrongUsage;
}

int RunCommand(const CommandInfo& command, const std::vector<std::string>& words) {
    try {
        Arguments arguments = ParseArguments(command, words);
        if (arguments.Has(Option::Help)) {
            arguments.operands = {command.name};
            return RunHelp(arguments);
        }
        WantRemarks(!arguments.Has(Option::Silent));
        return command.run(arguments);
    } catch (const UsageError& e) {
        return RefuseUsage(e.what(), UsageText(command));
    } catch (const std::bad_alloc&) {
        ReportError("there is not enough memory");
    } catch (const std::exception& e) {
        ReportError(e.what());
    }
    return kFailed;
}

// What could not be written to standard output is a result that is missing.
int FinishOutput(int status) {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        ReportError("cannot write the result: " + SystemErrorText(errno));
        return kFailed;
    }
    return status;
}

/// The words with the command in front of the options that were written before it. An option with a
/// value cannot stand there: the value would be taken for the command.
std::vector<std::string> CommandFirst(std::vector<std::string> words) {
    const auto command =
        std::ranges::find_if(words, [](const std::string& word) { return !word.starts_with('-'); });
    const bool isOfProgram =
        std::ranges::find(kProgramOptions, words.front()) != std::end(kProgramOptions);
    if (!isOfProgram && command != words.end() && FindCommand(*command) != nullptr) {
        std::rotate(words.begin(), command, command + 1);
    }
    return words;
}

int RunNamed(const std::string& name, const std::vector<std::string>& words) {
    if (name == "--help" || name == "-h") {
        return RunHelp({});
    }
    if (name == "--version" || name == "-V") {
        std::puts("klipra-cli " KLIPRA_VERSION);
        return kDone;
    }
    if (const CommandInfo* command = FindCommand(name)) {
        return RunCommand(*command, words);
    }
    const char* const kind = name.starts_with('-') ? "option" : "command";
    return RefuseUsage(std::string("unknown ") + kind + " " + Quoted(name), ProgramUsageText());
}

} // namespace

int RunCommandLine(int argc, char** argv) {
    if (argc < 2) {
        return RefuseUsage("missing command", ProgramUsageText());
    }
    const std::vector<std::string> words = CommandFirst({argv + 1, argv + argc});
    return FinishOutput(RunNamed(words.front(), {words.begin() + 1, words.end()}));
}
