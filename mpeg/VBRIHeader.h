#pragma once

#include "mpeg/VBRHeader.h"

/// The VBRI header. Stands 36 bytes after the first frame's begin. All numbers are big-endian:
/// identifier 4 bytes, version 2, delay 2, quality 2, byte count 4, frame count 4, number of table
/// entries 2, scale 2, bytes per entry 2, frames per entry 2, then the seek table.
class CVBRIHeader : public CVBRHeader {
public:
    /// The header in a frame, owned by the caller; null when there is none.
    /// Throws CMPAEndOfFileException when the file ends inside the header.
    static CVBRIHeader* FindHeader(const CMPAFrame* frame);

    /// @param offset  of the identifier. Throws like FindHeader.
    CVBRIHeader(const CMPAFrame* frame, long long offset);
    CVBRIHeader(const CVBRIHeader&) = delete;
    CVBRIHeader& operator=(const CVBRIHeader&) = delete;
    ~CVBRIHeader() override;

    /// Where to read on for a time, in bytes from the start of the audio.
    /// @param milliseconds  from 0; what lies beyond the end means the end
    unsigned int SeekPositionByTime(float milliseconds) const;

    float GetDelay() const { return m_delay; }
    unsigned int GetScale() const { return m_scale; } ///< of the table's entries; not applied
    unsigned int GetEntrySize() const { return m_entrySize; } ///< bytes
    unsigned int GetFramesPerEntry() const { return m_framesPerEntry; }
    unsigned int GetVersion() const { return m_version; }
    unsigned int GetPlayingTime() const { return m_playingTime; } ///< whole seconds

    using CVBRHeader::SeekPosition;
    unsigned int SeekPosition(float& percent) const override;

private:
    float m_delay;
    unsigned int m_scale = 0;
    unsigned int m_entrySize = 0;
    unsigned int m_framesPerEntry = 0;
    unsigned int m_version;
    unsigned int m_playingTime;
};
