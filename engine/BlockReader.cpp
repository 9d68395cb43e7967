#include "engine/BlockReader.h"

#include "audio/bass.h"
#include "engine/OpenStream.h"

BlockReader::BlockReader(const std::string& path) : m_stream(OpenDecodingStream(path)) {
}

BlockReader::~BlockReader() {
    BASS_StreamFree(m_stream);
}

bool BlockReader::Read(Block& block) const {
    block.position = BASS_ChannelGetPosition(m_stream, BASS_POS_BYTE);
    return BASS_ChannelGetLevelEx(m_stream, block.levels, kBlockSeconds, BASS_LEVEL_STEREO) !=
               FALSE &&
           BASS_ChannelIsActive(m_stream) != BASS_ACTIVE_STOPPED;
}

unsigned long long BlockReader::GetLength() const {
    return m_stream == 0 ? 0 : BASS_ChannelGetLength(m_stream, BASS_POS_BYTE);
}
