#include "cli/InterruptGuard.h"

#include <array>
#include <atomic>
#include <csignal>
#include <pthread.h>
#include <unistd.h>
#include <vector>

namespace {

// A message that nobody reads (SIGPIPE) ends the program as well.
constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE};

enum class Phase { PutOff, Remove, Ignore };

std::vector<std::string> guardedPaths; // changed by the main thread while signals are put off
pthread_t mainThread;
std::array<struct sigaction, kSignals.size()> actionsBefore;
volatile std::sig_atomic_t interruption = 0; // the signal that was put off
std::atomic<Phase> phase{Phase::PutOff};

// Only what a signal handler may call. On the main thread, so that nothing makes a file meanwhile.
void Handle(int signal) {
    if (pthread_equal(pthread_self(), mainThread) == 0) {
        pthread_kill(mainThread, signal);
        return;
    }
    if (phase == Phase::PutOff) {
        interruption = signal;
    } else if (phase == Phase::Remove) {
        for (const std::string& path : guardedPaths) {
            unlink(path.c_str());
        }
        std::signal(signal, SIG_DFL);
        std::raise(signal);
    }
}

} // namespace

InterruptGuard::InterruptGuard() {
    guardedPaths.clear();
    mainThread = pthread_self();
    interruption = 0;
    phase = Phase::PutOff;
    struct sigaction action {};
    action.sa_handler = Handle;
    action.sa_flags = SA_RESTART;
    sigfillset(&action.sa_mask);
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], nullptr, &actionsBefore[i]);
        if (actionsBefore[i].sa_handler != SIG_IGN) {
            sigaction(kSignals[i], &action, nullptr);
        }
    }
}

InterruptGuard::~InterruptGuard() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], &actionsBefore[i], nullptr);
    }
    if (interruption != 0) {
        std::raise(interruption);
    }
}

void InterruptGuard::Add(const std::string& path) {
    guardedPaths.push_back(path);
}

bool InterruptGuard::Begin() {
    phase = Phase::Remove;
    return interruption == 0; // one that came before this, or it has ended the program
}

void InterruptGuard::HoldOff() {
    phase = Phase::Ignore;
}

bool InterruptGuard::IsInterrupted() {
    return interruption != 0;
}
