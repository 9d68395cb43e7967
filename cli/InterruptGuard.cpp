#include "cli/InterruptGuard.h"

#include <csignal>
#include <unistd.h>

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

std::vector<std::string> guardedPaths; // set before the handlers are, and kept until they are gone

// Only what a signal handler may call.
void RemoveAndDie(int signal) {
    for (const std::string& path : guardedPaths) {
        unlink(path.c_str());
    }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

} // namespace

InterruptGuard::InterruptGuard(const std::vector<std::string>& paths) {
    guardedPaths = paths;
    for (const int signal : kSignals) {
        // A signal that was ignored when the program began (nohup) stays ignored.
        if (std::signal(signal, RemoveAndDie) == SIG_IGN) {
            std::signal(signal, SIG_IGN);
        }
    }
}

InterruptGuard::~InterruptGuard() {
    for (const int signal : kSignals) {
        if (std::signal(signal, SIG_DFL) == SIG_IGN) {
            std::signal(signal, SIG_IGN);
        }
    }
}

void InterruptGuard::HoldOff() {
    for (const int signal : kSignals) {
        std::signal(signal, SIG_IGN);
    }
}
