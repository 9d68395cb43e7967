#pragma once

#include "cutting/FrameWalk.h"
#include "finish/FrameRuns.h"
#include "mpeg/MPAFile.h"

#include <cstdint>
#include <span>
#include <string>

/// The file that edits have made of an MP3, to be compared with what it is said to hold. All throw
/// CutError: EditAltered where it holds something else, or cannot be read.
class HeldFrames {
public:
    /// @param runs       has to live as long as this
    /// @param hasHeader  the file that was edited has a VBR header, so that its edits have one too
    HeldFrames(const std::string& path, const FrameRuns& runs, bool hasHeader);

    long long FileBytes() const;

    /// Compares a frame of the source. One that is not held is not looked at.
    /// @param number  higher than that of the last one
    void Compare(long long number, std::span<const std::uint8_t> bytes);

private:
    bool Equals(long long place, std::span<const std::uint8_t> bytes);

    const std::string m_path;
    const FrameRuns& m_runs;
    const long long m_headerFrames;
    CMPAFile m_file;
    FrameWalk m_walk;
};
