#pragma once

#include <cstdint>
#include <string>

/// Opens a file as a stream to play.
/// @return the audio library's handle, to be freed with BASS_StreamFree; 0 when the file cannot be
///         opened or holds no audio
[[nodiscard]] std::uint32_t OpenPlaybackStream(const std::string& path);

/// Opens a file as a stream to read and measure, as above.
[[nodiscard]] std::uint32_t OpenDecodingStream(const std::string& path);
