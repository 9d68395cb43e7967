#include "app/TerminationSignals.h"

#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

int writeEnd = -1;

void HandleSignal(int /*signal*/) {
    const int error = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(writeEnd, &byte, 1);
    errno = error;
}

void Handle(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : kSignals) {
        sigaction(signal, &action, nullptr);
    }
}

} // namespace

TerminationSignals::TerminationSignals() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // no more descriptors: signals end the process as they do by themselves
    }
    m_readEnd = ends[0];
    writeEnd = ends[1];
    const auto* const notifier = new QSocketNotifier(m_readEnd, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        std::array<char, 16> bytes{};
        [[maybe_unused]] const ssize_t arrived = read(m_readEnd, bytes.data(), bytes.size());
        Q_EMIT terminationRequested();
    });
    Handle(HandleSignal);
}

TerminationSignals::~TerminationSignals() {
    if (m_readEnd >= 0) {
        Handle(SIG_DFL);
        close(m_readEnd);
        close(writeEnd);
    }
}
