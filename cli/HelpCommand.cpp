#include "cli/Commands.h"
#include "cli/HelpText.h"
#include "places/PrintableText.h"

#include <cstdio>

int RunHelp(const Arguments& arguments) {
    if (arguments.operands.empty()) {
        std::fputs(ProgramHelpText().c_str(), stdout);
        return kDone;
    }
    const CommandInfo* const command = FindCommand(arguments.operands[0]);
    if (command == nullptr) {
        throw UsageError("unknown command " + Quoted(arguments.operands[0]));
    }
    std::fputs(HelpText(*command).c_str(), stdout);
    return kDone;
}
