#pragma once

#include "cutting/WAVChunkMap.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>

/// The cue points of a source (RIFF "cue "): where each lies, by its name.
using CuePoints = std::map<std::uint32_t, long long>;

/// Adds the points of a cue chunk. A count that promises more than there is counts what is there.
void ReadCuePoints(const std::string& payload, CuePoints& points);

/// Whether a chunk tells something of the samples that cutting makes untrue.
/// @param id    four characters
/// @param type  the first four bytes of its payload
bool IsCorrected(const std::string& id, const std::string& type);

/// The payload of such a chunk in a result: positions as the map says, points and loops that lost
/// their samples left out. Of a damaged chunk as far as it can be understood.
///
/// fact, cue, plst, smpl and LIST adtl are those of RIFF (Multimedia Programming Interface 1.0 and
/// its update of 1994), bext that of EBU Tech 3285; PEAK, levl and "MD5 " describe the samples as a
/// whole.
/// @return none where nothing is left to tell
[[nodiscard]] std::optional<std::string> CorrectChunk(const std::string& id,
                                                      const std::string& payload,
                                                      const CuePoints& points,
                                                      const WAVChunkMap& map);
