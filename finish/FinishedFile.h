#pragma once

#include "bitstream/CRC.h"
#include "cutting/OutputFile.h"
#include "finish/HeaderFrame.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// The file that finishing writes: frames one after the other, and what its header has to tell of
/// them. Throws CutError where something cannot be written.
class FinishedFile {
public:
    FinishedFile(const std::string& path, const char* source);
    FinishedFile(const FinishedFile&) = delete;
    FinishedFile& operator=(const FinishedFile&) = delete;
    ~FinishedFile() = default;

    /// Bytes that are no audio.
    void Write(std::span<const std::uint8_t> bytes);
    /// Leaves room for a header that is written when all is known.
    void ReserveHeader(std::size_t bytes);
    /// @param isCopied  it stands so in the source, but for what joining changed
    void WriteFrame(std::span<const std::uint8_t> frame, bool isCopied = true);
    void WriteAt(long long offset, std::span<const std::uint8_t> bytes);

    long long Position() const { return m_position; }
    long long HeaderOffset() const { return m_headerOffset; }
    long long Frames() const { return m_frames; }

    /// What the header has to tell, but for the gap.
    HeaderTruth Truth() const;
    /// See OutputFile::Close.
    bool Close() { return m_file.Close(true); }

private:
    void NoteOffset();

    std::string m_path;
    OutputFile m_file;
    long long m_position = 0;
    long long m_headerOffset = 0;
    long long m_frames = 0;
    long long m_audioBytes = 0;
    bitstream::MusicCRC m_crc;
    int m_copiedIndex = -1; // the bitrate index of all frames that were copied; -1 before the first
    int m_index = -1;       // and of all frames
    bool m_isConstant = true;
    bool m_isUniform = true;
    std::vector<long long> m_offsets; // of every m_stride-th frame
    long long m_stride = 1;
};
