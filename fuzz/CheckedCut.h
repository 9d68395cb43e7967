#pragma once

#include "fuzz/FuzzInput.h"

#include <optional>

/// Signature of the cutters.
using Cutter = bool (*)(const char*, const char*, float, float, bool);

/// Cuts the input's file, range and mode being its choice, and checks what holds for either format:
/// the source stays as it is, a cut that fails says why and leaves no file.
/// @return path of the output; none when the cut failed
std::optional<std::string> CheckedCut(Cutter cutter, const FuzzInput& input);

/// Whether the input's cut keeps the range rather than cutting it out.
bool KeepsRange(const FuzzInput& input);
