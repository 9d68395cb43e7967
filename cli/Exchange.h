#pragma once

#include "platform/FileReplacement.h"

#include <string>
#include <vector>

/// Puts new files into the places of their targets, and takes all of it back unless Keep is called.
/// What goes wrong is reported.
class Exchange {
public:
    Exchange() = default;
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;
    ~Exchange();

    /// @param output    the target's path
    /// @param keepsOld  whether the old file can be brought back; not needed for the last one
    /// @return false after a failure
    [[nodiscard]] bool Add(FileReplacement& replacement, const std::string& output, bool keepsOld);

    void Keep();

private:
    struct Step {
        std::string output;
        std::string oldPath; // the old file's second name, or where it has stepped aside
        bool hasOld = false;
        bool isDone = false;
    };

    [[nodiscard]] static bool KeepOld(Step& step);
    static void Undo(const Step& step);

    std::vector<Step> m_steps;
};
