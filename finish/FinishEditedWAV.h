#pragma once

#include "finish/EditedAudio.h"

#include <string>

/// FinishWAV for what edits have made of a file; its frames are sample frames. Where one that is
/// written is another one in theirs, the call fails (CutReason::EditAltered).
[[nodiscard]] bool FinishEditedWAV(const char* src, const std::string& dst,
                                   const EditedAudio& audio);
