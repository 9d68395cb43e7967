#pragma once

#include <string>

/// Removes a file when the program is interrupted, terminated or hung up on while this lives; the
/// signal then takes its course. One at a time.
class InterruptGuard {
public:
    explicit InterruptGuard(const std::string& path);
    InterruptGuard(const InterruptGuard&) = delete;
    InterruptGuard& operator=(const InterruptGuard&) = delete;
    ~InterruptGuard();
};
