#include "cutting/FrameWalk.h"

#include "cutting/CutError.h"
#include "cutting/CutWork.h"
#include "mpeg/MPAFile.h"
#include "mpeg/MPAStream.h"

#include <utility>

FrameWalk::FrameWalk(CMPAFile& file, Stump stump)
    : m_file(file), m_fileSize(file.GetStream()->GetSize()), m_stump(stump) {
    file.FindFrame(CMPAFile::First, nullptr, 0, *m_current);
    if (*m_current) {
        Examine((*m_current)->GetOffset());
    }
}

bool FrameWalk::Step() {
    if (!*m_current) {
        return false;
    }
    const long long end = (*m_current)->GetOffset() + (*m_current)->GetSize();
    m_file.FindFrame(CMPAFile::Next, Current(), 0, *m_next);
    std::swap(m_current, m_next);
    if (*m_current) {
        Examine(end);
    }
    if (!*m_current) {
        return false;
    }
    ++m_number;
    AddWork((*m_current)->GetSize());
    return true;
}

// Only a frame that is not where it was expected may be one of another stream.
void FrameWalk::Examine(long long expectedOffset) {
    const CMPAFrame& frame = **m_current;
    if (frame.GetOffset() != expectedOffset &&
        !(*frame.GetHeader() == *m_file.GetFirstFrame()->GetHeader())) {
        AddCutWarning(CutWarning::FormatChanges);
    }
    if (m_stump == Stump::NoFrame && frame.GetOffset() + frame.GetSize() > m_fileSize) {
        m_hasFoundStump = true;
        m_current->reset();
    }
}

void FrameWalk::Skip(long long frames) {
    for (long long i = 0; i < frames && Step(); ++i) {
    }
}

void FrameWalk::GoTo(const Place& place) {
    *m_current = place.frame;
    m_number = place.number;
}
