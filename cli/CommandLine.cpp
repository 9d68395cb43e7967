#include "cli/CommandLine.h"

#include "cli/Commands.h"
#include "cli/HelpText.h"
#include "cli/Report.h"
#include "places/PrintableText.h"
#include "platform/SystemError.h"

#include <cerrno>
#include <cstdio>

namespace {

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
    return FinishOutput(RunNamed(argv[1], {argv + 2, argv + argc}));
}
