#pragma once

#include <QObject>

/// Turns the first SIGINT, SIGTERM or SIGHUP into a signal of Qt's, on the main thread. One at a
/// time in a process.
class TerminationSignals : public QObject {
    Q_OBJECT

public:
    TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;
    ~TerminationSignals() override; ///< the signals do again what they did before

Q_SIGNALS:
    void terminationRequested();

private:
    int m_readEnd = -1; // of a pipe, which a signal handler may write to
};
