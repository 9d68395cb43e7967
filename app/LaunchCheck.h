#pragma once

#include "engine/FormatType.h"

#include <cstdint>
#include <functional>
#include <string>
#include <variant>
#include <vector>

/// The file that the program was started with.
struct LaunchFile {
    FormatType format{};
    std::string path;

    bool operator==(const LaunchFile&) const = default;
};

/// Why the program cannot start: a text for the person, UTF-8.
struct LaunchRefusal {
    std::string text;

    bool operator==(const LaunchRefusal&) const = default;
};

/// Whether the program can start; the first thing that forbids it is told.
/// @param arguments       of the process, its name first; what follows the file is ignored
/// @param libraryVersion  of the audio library: major, minor and two bytes of revision, from the
///                        highest byte
std::variant<LaunchFile, LaunchRefusal>
CheckLaunch(const std::vector<std::string>& arguments,
            const std::function<bool(const std::string&)>& fileExists,
            std::uint32_t libraryVersion);
