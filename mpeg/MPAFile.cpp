#include "mpeg/MPAFile.h"

#include "mpeg/MPAFileStream.h"
#include "mpeg/Tags.h"
#include "mpeg/VBRHeader.h"

#include <algorithm>
#include <cstdint>

namespace {

// The shortest frame there is: MPEG 2 Layer III at 8 kbit/s and 24 kHz. A backward search starts
// so far before the end or before the next frame.
constexpr long long kShortestFrameBytes = 24;

// A stream may begin with silence at a low bitrate: look a little further for a typical frame.
constexpr unsigned int kQuietBitrateBps = 48000;
constexpr int kQuietFrames = 27;

} // namespace

CMPAFile::CMPAFile(const char* fileName)
    : m_stream(std::make_unique<CMPAFileStream>(fileName)),
      m_tags(std::make_unique<CTags>(m_stream.get())),
      m_firstFrame(std::make_unique<CMPAFrame>(m_stream.get(), m_tags->GetBeginOffset(), true,
                                               false, false, nullptr)),
      m_vbrHeader(m_firstFrame->FindVBRHeader()) {
    CalcBytesPerSec();
}

CMPAFile::~CMPAFile() = default;

void CMPAFile::CalcBytesPerSec() {
    if (m_vbrHeader == nullptr || m_vbrHeader->GetFrameCount() == 0) {
        m_bytesPerSec = EstimateBitrateBps() / 8;
        return;
    }
    if (m_vbrHeader->GetByteCount() == 0) {
        const long long audioBytes = m_tags->GetEndOffset() - m_tags->GetBeginOffset();
        m_vbrHeader->SetByteCount(static_cast<unsigned int>(std::max(0LL, audioBytes)));
    }
    const CMPAHeader& header = *m_firstFrame->GetHeader();
    const std::uint64_t byteCount = m_vbrHeader->GetByteCount();
    const std::uint64_t samples =
        std::uint64_t{m_vbrHeader->GetFrameCount()} * header.GetSamplesPerFrame();
    const std::uint64_t wholeSeconds = samples / header.GetSamplingRateHz();
    // Less than a second has no whole seconds to divide by.
    const std::uint64_t bytesPerSec = wholeSeconds > 0
                                          ? byteCount / wholeSeconds
                                          : byteCount * header.GetSamplingRateHz() / samples;
    m_bytesPerSec = static_cast<unsigned int>(bytesPerSec);
}

unsigned int CMPAFile::EstimateBitrateBps() {
    std::optional<CMPAFrame> walked = *m_firstFrame;
    std::optional<CMPAFrame> next;
    for (int i = 0; i < kQuietFrames && walked->GetHeader()->GetBitrateBps() <= kQuietBitrateBps;
         ++i) {
        FindFrame(Next, &*walked, 0, next);
        if (!next) {
            return m_firstFrame->GetHeader()->GetBitrateBps();
        }
        walked = next;
    }
    return walked->GetHeader()->GetBitrateBps();
}

CMPAFrame* CMPAFile::GetFrame(GetType type, CMPAFrame* frame, bool deleteOldFrame,
                              long long offset) {
    if (type > Resync || (frame == nullptr && (type == Next || type == Prev))) {
        return nullptr;
    }
    std::optional<CMPAFrame> found;
    try {
        FindFrame(type, frame, offset, found);
    } catch (const CMPAException&) {
        found.reset();
    }
    if (deleteOldFrame) {
        delete frame;
    }
    return found ? new CMPAFrame(*found) : nullptr;
}

void CMPAFile::FindFrame(GetType type, const CMPAFrame* frame, long long offset,
                         std::optional<CMPAFrame>& found) {
    const CMPAHeader* compareHeader = m_firstFrame->GetHeader();
    switch (type) {
    case First:
        offset = m_tags->GetBeginOffset();
        compareHeader = nullptr;
        break;
    case Last:
        offset = m_tags->GetEndOffset() - kShortestFrameBytes;
        break;
    case Next:
        offset = frame->GetOffset() + frame->GetSize();
        break;
    case Prev:
        offset = frame->GetOffset() - kShortestFrameBytes;
        break;
    case Resync:
        compareHeader = nullptr;
        break;
    }
    try {
        found.emplace(m_stream.get(), offset, true, type == Next, type == Last || type == Prev,
                      compareHeader);
    } catch (const CMPAException& e) {
        found.reset();
        if (e.GetErrorID() == CMPAException::CantReadFromFile) {
            throw;
        }
        if (type == Next) {
            FindFrame(Resync, nullptr, offset, found);
        }
    }
}
