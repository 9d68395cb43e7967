#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Where a piece lies in the built file.
struct Extent {
    long long offset = 0;
    unsigned int size = 0; ///< bytes

    long long End() const { return offset + size; }
    bool operator==(const Extent&) const = default;
};

/// How a frame is encoded; what stands here stands in its header.
struct FrameFormat {
    unsigned int version = 3; ///< bits of the header: 3 MPEG 1, 2 MPEG 2, 0 MPEG 2.5
    unsigned int layer = 3;   ///< 1, 2, 3
    unsigned int bitrateKbps = 128;
    unsigned int rateHz = 44100;
    unsigned int channelMode = 0; ///< bits of the header: 0 stereo, 1 joint, 2 dual, 3 single
    unsigned int modeExtension = 0;
    unsigned int emphasis = 0;
    bool isPadded = false;
    bool isProtected = false; ///< the header announces a CRC; the two bytes are no valid one

    /// The four bytes of the header. Throws std::invalid_argument for a bitrate or a sampling rate
    /// that this version and layer do not have.
    std::string Header() const;
    unsigned int SizeBytes() const; ///< of the whole frame, ISO/IEC 11172-3, 2.4.3.1
};

/// Builds MPEG audio files for tests, piece by piece from their start:
/// `Mp3Builder().Id3v2(1000).Xing(CXINGHeader::kFrameCount, 12).Frames(12).Id3v1()`.
///
/// A frame is filled with its number (7 bits a byte), a tag with '.', so that no header is found in
/// either. Nothing is checked or completed: a file may be as wrong as a test needs it.
class Mp3Builder {
public:
    /// The format of all frames that follow.
    Mp3Builder& Format(const FrameFormat& format);
    Mp3Builder& Frames(unsigned int count);

    /// A frame with a Xing header, which holds the fields that the flags declare (1 frame count, 2
    /// byte count, 4 seek table, 8 quality). The table rises evenly.
    Mp3Builder& Xing(unsigned int flags, unsigned int frameCount = 0, unsigned int byteCount = 0,
                     unsigned int quality = 0, const char* identifier = "Xing");
    /// A frame with a VBRI header, whose table has three entries.
    Mp3Builder& Vbri(unsigned int frameCount = 0, unsigned int byteCount = 0);
    /// The encoder's tag of the VBR header that was just built: CBR of 128 kbit/s up to 16 kHz.
    /// @param encoder  9 characters
    Mp3Builder& Lame(const std::string& encoder = "LAME3.99r");

    // Tags; what they hold is so many bytes.
    Mp3Builder& Id3v1(unsigned char track = 0); ///< version 1.1 with a track
    Mp3Builder& Id3v2(unsigned int contentBytes, bool hasFooter = false);
    Mp3Builder& Ape(unsigned int itemBytes, bool hasHeader = true, unsigned int version = 2000);
    Mp3Builder& Lyrics3v1(unsigned int textBytes);
    Mp3Builder& Lyrics3v2(unsigned int fieldBytes);
    /// @param metadataBytes  7868 makes a tag of version 3.00, any other one of 3.05
    Mp3Builder& MusicMatch(unsigned int imageBytes, unsigned int metadataBytes = 7936,
                           bool hasHeader = false);

    Mp3Builder& Raw(const std::string& bytes);
    Mp3Builder& Garbage(unsigned int count) { return Raw(std::string(count, '\x2A')); }
    Mp3Builder& Truncate(unsigned int count); ///< takes bytes away from the end
    /// Writes over what is there; the file grows when that is not enough.
    /// @param offset  from the end where negative
    Mp3Builder& Patch(long long offset, const std::string& bytes);

    const std::string& Bytes() const { return m_bytes; }
    long long Size() const { return static_cast<long long>(m_bytes.size()); }
    std::string BytesOf(const Extent& piece) const;

    /// The frames, that of a VBR header included, and the tags, in the order of the file.
    const std::vector<Extent>& FrameExtents() const { return m_frames; }
    const std::vector<Extent>& TagExtents() const { return m_tags; }
    long long VbrHeaderOffset() const { return m_vbrHeaderOffset; } ///< of its identifier

private:
    Mp3Builder& Tag(const std::string& bytes);

    std::string m_bytes;
    FrameFormat m_format;
    std::vector<Extent> m_frames;
    std::vector<Extent> m_tags;
    long long m_vbrHeaderOffset = -1;
};

/// A number as bytes, the highest first.
std::string BigEndian(unsigned int value, unsigned int bytes = 4);
