#pragma once

#include "finish/FinishedFile.h"
#include "finish/MainDataPacker.h"
#include "finish/SourceFrames.h"

#include <cstddef>
#include <map>

/// Writes the first seats of a packer, with all main data that lie in them, and has it forget them.
/// @param frames  by the seats' ids, those of later seats too; an id of -1 is that of a made frame
void WriteSeats(MainDataPacker& packer, std::size_t seats,
                const std::map<long long, SourceFrame>& frames, FinishedFile& file);
