#include "engine/OpenStream.h"

#include "audio/bass.h"

namespace {

std::uint32_t OpenStream(const std::string& path, DWORD streamFlags, DWORD musicFlags) {
    const HSTREAM stream = BASS_StreamCreateFile(FALSE, path.c_str(), 0, 0, streamFlags);
    return stream != 0 ? stream : BASS_MusicLoad(FALSE, path.c_str(), 0, 0, musicFlags, 1);
}

} // namespace

std::uint32_t OpenPlaybackStream(const std::string& path) {
    return OpenStream(path, 0, BASS_MUSIC_RAMPS | BASS_MUSIC_POSRESET | BASS_MUSIC_PRESCAN);
}

std::uint32_t OpenDecodingStream(const std::string& path) {
    return OpenStream(path, BASS_STREAM_DECODE, BASS_MUSIC_DECODE);
}
