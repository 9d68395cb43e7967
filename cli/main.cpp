#include "audio/bass.h"
#include "cli/CommandLine.h"
#include "cli/Report.h"

#include <csignal>

int main(int argc, char** argv) {
    std::signal(SIGXFSZ, SIG_IGN); // a file that grows too large is an error in writing
    BASS_KeepLevels(FALSE);        // no command measures a file twice
    TerminalDesktop desktop;
    InstallDesktop(&desktop);
    const int status = RunCommandLine(argc, argv);
    InstallDesktop(nullptr);
    return status;
}
