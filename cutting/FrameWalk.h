#pragma once

#include "mpeg/MPAFrame.h"

#include <optional>

class CMPAFile;

/// Walks over the frames of a file, one at a time, and keeps count. Every step throws CMPAException
/// when the file cannot be read, and CutError when the cut has been cancelled.
class FrameWalk {
public:
    /// A place to come back to.
    struct Place {
        std::optional<CMPAFrame> frame;
        long long number = 0;
    };

    /// What a frame at the end that the file holds only the beginning of is.
    enum class Stump { Frame, NoFrame };

    /// Begins at the file's first frame.
    explicit FrameWalk(CMPAFile& file, Stump stump = Stump::Frame);
    FrameWalk(const FrameWalk&) = delete;
    FrameWalk& operator=(const FrameWalk&) = delete;
    ~FrameWalk() = default;

    // Null at the end of the audio, where it stays.
    CMPAFrame* Current() { return *m_current ? &**m_current : nullptr; }

    /// How many frames lie before the current one; at the end, how many the first is followed by.
    long long Number() const { return m_number; }

    /// Goes to the next frame. Returns false at the end.
    bool Step();

    /// So many steps, or fewer when the end comes first.
    void Skip(long long frames);

    Place Here() const { return {*m_current, m_number}; }
    void GoTo(const Place& place);

    /// Whether the file ends in a stump that was passed for no frame.
    bool HasFoundStump() const { return m_hasFoundStump; }

private:
    void Examine(long long expectedOffset);

    CMPAFile& m_file;
    long long m_fileSize;
    Stump m_stump;
    bool m_hasFoundStump = false;
    long long m_number = 0;
    // A frame and the one after it take turns, so that none is moved.
    std::optional<CMPAFrame> m_frames[2];
    std::optional<CMPAFrame>* m_current = &m_frames[0];
    std::optional<CMPAFrame>* m_next = &m_frames[1];
};
