#include "cli/CommandLine.h"
#include "cli/Report.h"

int main(int argc, char** argv) {
    TerminalDesktop desktop;
    InstallDesktop(&desktop);
    const int status = RunCommandLine(argc, argv);
    InstallDesktop(nullptr);
    return status;
}
