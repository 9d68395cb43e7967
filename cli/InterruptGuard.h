#pragma once

#include <string>
#include <vector>

/// Removes files when the program is interrupted, terminated or hung up on while this lives; the
/// signal then takes its course. One at a time.
class InterruptGuard {
public:
    explicit InterruptGuard(const std::vector<std::string>& paths);
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;
    ~InterruptGuard();

    /// From now on such signals do nothing: for last steps that are quick and not to be half done.
    static void HoldOff();
};
