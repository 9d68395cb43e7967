#pragma once

#include "mpeg/MPAFrame.h"

#include <memory>
#include <optional>

class CMPAStream;
class CTags;
class CVBRHeader;

/// A parsed MPEG audio file: the tags at both ends, the first frame, the VBR header in it, and a
/// walk over the frames. Holds one frame at a time; one thread at a time.
class CMPAFile {
public:
    /// Which frame GetFrame fetches, and from where it searches.
    enum GetType : unsigned int {
        First,  ///< the first one after the leading tags
        Last,   ///< backwards from the trailing tags
        Next,   ///< the one that follows the given frame
        Prev,   ///< backwards from the given frame
        Resync, ///< the next one at or after an offset
    };

    /// Opens and parses a file. Throws CMPAException when it cannot be opened, when a tag is
    /// damaged, or when no frame begins in the 32768 bytes after the leading tags.
    explicit CMPAFile(const char* fileName);
    CMPAFile(const CMPAFile&) = delete;
    CMPAFile& operator=(const CMPAFile&) = delete;
    ~CMPAFile();

    /// Computes the average data rate; the constructor has done so. Fills in the byte count of a
    /// VBR header that has a frame count only.
    void CalcBytesPerSec();

    /// Fetches a frame, which the caller owns.
    /// @param frame           where Next and Prev go on from; null for the other types
    /// @param deleteOldFrame  delete the frame passed in, whether there is another one or not
    /// @param offset          Resync: where the search starts, in bytes
    /// @return null when there is no such frame. Next resynchronises over garbage and then accepts
    /// the header of another stream; it searches beyond the trailing tags' begin. Throws nothing
    /// but bad_alloc.
    CMPAFrame* GetFrame(GetType type, CMPAFrame* frame, bool deleteOldFrame, long long offset);

    /// GetFrame for a walk over many frames: the frame passed in stays, and the one found is made
    /// where the caller wants it.
    /// @param found  out: the frame, or none; not the one that holds the frame passed in
    /// Throws CMPAException (CantReadFromFile) when the file cannot be read on, which is not its
    /// end.
    void FindFrame(GetType type, const CMPAFrame* frame, long long offset,
                   std::optional<CMPAFrame>& found);

    unsigned int GetBytesPerSec() const { return m_bytesPerSec; }
    CMPAStream* GetStream() const { return m_stream.get(); }
    const CTags* GetTags() const { return m_tags.get(); }
    const CMPAFrame* GetFirstFrame() const { return m_firstFrame.get(); }
    CVBRHeader* GetVBRHeader() const { return m_vbrHeader.get(); } ///< null for none

private:
    unsigned int EstimateBitrateBps();

    // Declared so that they go in the reverse of the order in which they were made.
    unsigned int m_bytesPerSec = 0;
    std::unique_ptr<CMPAStream> m_stream;
    std::unique_ptr<CTags> m_tags;
    std::unique_ptr<CMPAFrame> m_firstFrame;
    std::unique_ptr<CVBRHeader> m_vbrHeader;
};
