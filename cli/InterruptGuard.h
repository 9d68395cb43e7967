#pragma once

#include <string>

/// While it lives, a signal that ends the program removes the files that it was told of first. A
/// signal that was ignored when the program began (nohup) stays ignored. One at a time, on the main
/// thread.
class InterruptGuard {
public:
    InterruptGuard();
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;
    /// Signals do again what they did before; one that was put off ends the program now.
    ~InterruptGuard();

    /// To be removed from now on.
    void Add(const std::string& path);

    /// Until this is called signals are put off, as files are being made that nobody knows yet.
    /// @return false when there was one: whatever was made has to go
    [[nodiscard]] bool Begin();

    /// From now on signals do nothing: for last steps that are quick and not to be half done.
    void HoldOff();

    /// Whether a signal was put off.
    static bool IsInterrupted();
};
