#include "finish/HeldFrames.h"

#include "cutting/CutError.h"
#include "mpeg/MPAException.h"
#include "mpeg/MPAStream.h"

#include <algorithm>

// What the parser says of it would be told of the source.
HeldFrames::HeldFrames(const std::string& path, const FrameRuns& runs, bool hasHeader) try
    : m_path(path), m_runs(runs), m_headerFrames(hasHeader ? 1 : 0), m_file(path.c_str()),
      m_walk(m_file, FrameWalk::Stump::NoFrame) {
} catch (const CMPAException&) {
    throw CutError{CutReason::EditAltered, 0, path};
}

long long HeldFrames::FileBytes() const {
    return m_file.GetStream()->GetSize();
}

void HeldFrames::Compare(long long number, std::span<const std::uint8_t> bytes) {
    const std::optional<long long> place = m_runs.PlaceOf(number);
    bool isEqual = !place;
    try {
        isEqual = isEqual || Equals(*place, bytes);
    } catch (const CMPAException&) {
        isEqual = false;
    }
    if (!isEqual) {
        throw CutError{CutReason::EditAltered, 0, m_path};
    }
}

bool HeldFrames::Equals(long long place, std::span<const std::uint8_t> bytes) {
    m_walk.Skip(place + m_headerFrames - m_walk.Number());
    const CMPAFrame* const frame = m_walk.Current();
    if (frame == nullptr || frame->GetSize() != bytes.size()) {
        return false;
    }
    long long offset = frame->GetOffset();
    const unsigned char* const held =
        frame->GetStream()->ReadBytes(frame->GetSize(), offset, false, false);
    return std::equal(bytes.begin(), bytes.end(), held);
}
