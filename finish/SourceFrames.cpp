#include "finish/SourceFrames.h"

#include "bitstream/SideInfo.h"
#include "cutting/CutError.h"
#include "mpeg/MPAFile.h"
#include "mpeg/MPAStream.h"

#include <algorithm>
#include <cstring>

namespace {

using bitstream::kHeaderBytes;

constexpr long long kNothingBefore = -1'000'000'000;

/// The room for main data that a frame like this one has at each bitrate.
std::array<unsigned int, 15> PayloadBytes(const SourceFrame& frame) {
    std::array<unsigned int, 15> payloads{};
    const bitstream::FrameFacts& facts = frame.facts;
    const auto overhead = static_cast<unsigned int>(frame.PayloadOffset());
    for (unsigned int index = 1; index < payloads.size(); ++index) {
        const unsigned int bitrate =
            bitstream::kBitratesKbps[facts.isLSF][facts.layer][index] * 1000;
        const unsigned int bytes = bitstream::FrameBytes(facts.isLSF, facts.layer, bitrate,
                                                         facts.samplingRateHz, facts.padding);
        payloads[index] = bytes > overhead ? bytes - overhead : 0;
    }
    return payloads;
}

/// Decoders play a header frame in the middle of a stream as silence, and programs that look for
/// one mistake it for this file's own.
bool TakeIdentifier(std::span<std::uint8_t> bytes, std::size_t offset) {
    for (const char* const identifier : {"Xing", "Info"}) {
        if (bytes.size() >= offset + 4 && std::memcmp(bytes.data() + offset, identifier, 4) == 0) {
            std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(offset), 4, std::uint8_t{0});
            return true;
        }
    }
    return false;
}

/// Of a frame that the walk has found. The walk reads the header, and the frame is read after it:
/// where another header stands now, another program writes to the file.
bitstream::FrameFacts FactsOf(std::span<const std::uint8_t> frame) {
    bitstream::FrameFacts facts;
    if (bitstream::DecodeHeader(frame.data(), facts) != bitstream::HeaderState::Sound) {
        throw CutError{CutReason::SourceChanged};
    }
    return facts;
}

} // namespace

SourceFrames::SourceFrames(CMPAFile& file)
    : m_file(file), m_walk(file, FrameWalk::Stump::NoFrame),
      m_headerFrames(file.GetVBRHeader() != nullptr ? 1 : 0) {
    if (m_walk.Current() == nullptr || (m_headerFrames == 1 && !m_walk.Step())) {
        throw CutError{CutReason::NoFrame};
    }
    m_facts = FactsOf(ReadCurrent());
}

std::span<std::uint8_t> SourceFrames::ReadCurrent() {
    const CMPAFrame& frame = *m_walk.Current();
    long long offset = frame.GetOffset();
    const std::span<std::uint8_t> bytes(
        frame.GetStream()->ReadBytes(frame.GetSize(), offset, false, false), frame.GetSize());
    if (m_witness) {
        m_witness(Next(), bytes);
    }
    return bytes;
}

void SourceFrames::SkipTo(long long number) {
    m_loaded.clear();
    m_payloads.clear();
    m_dataEnd = kNothingBefore;
    while (Next() < number && !m_isAtEnd) {
        Step();
    }
    m_firstLoaded = Next();
    // Before the first frame there is nothing to point at; elsewhere there is more than is known.
    m_payloadEnd = 0;
}

void SourceFrames::Load(long long begin, long long end) {
    begin = std::max(begin, 0LL);
    const long long loadedEnd = m_firstLoaded + static_cast<long long>(m_loaded.size());
    if (m_loaded.empty() || begin > loadedEnd || Next() != loadedEnd) {
        SkipTo(begin);
    }
    while (Next() < end && !m_isAtEnd) {
        m_loaded.push_back(Describe(ReadCurrent()));
        Step();
    }
    constexpr std::size_t kMostLoaded = 600;
    for (; m_loaded.size() > kMostLoaded && m_firstLoaded < begin; ++m_firstLoaded) {
        m_loaded.pop_front();
    }
}

const SourceFrame* SourceFrames::Get(long long number) const {
    const long long index = number - m_firstLoaded;
    return index >= 0 && index < static_cast<long long>(m_loaded.size())
               ? &m_loaded[static_cast<std::size_t>(index)]
               : nullptr;
}

void SourceFrames::Pass(long long end,
                        const std::function<void(std::span<const std::uint8_t>)>& take) {
    m_loaded.clear();
    for (; Next() < end && !m_isAtEnd; Step()) {
        const std::span<std::uint8_t> bytes = ReadCurrent();
        if (IsLayerIII()) {
            TakeIdentifier(bytes, kHeaderBytes + m_facts.SideInfoBytes());
        }
        take(bytes);
    }
}

SourceFrame SourceFrames::Describe(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t kMostPayloads = 4096;
    SourceFrame frame;
    frame.bytes.assign(bytes.begin(), bytes.end());
    frame.facts = FactsOf(bytes);
    frame.packed.bitrateIndex = frame.facts.bitrateIndex;
    if (frame.facts.layer != 2 || frame.bytes.size() <= frame.PayloadOffset()) {
        frame.isForeign = frame.packed.isOpaque = true;
        return frame;
    }
    frame.wasHeader = TakeIdentifier(frame.bytes, kHeaderBytes + frame.facts.SideInfoBytes());
    const auto info = bitstream::SideInfo::Read(frame.bytes.data() + frame.facts.SideInfoOffset(),
                                                frame.facts.isLSF, frame.facts.IsSingleChannel());
    PackedFrame& packed = frame.packed;
    packed.payloadBytes = PayloadBytes(frame);
    packed.mainDataBegin = info.mainDataBegin;
    packed.mainDataBytes = info.MainDataBytes();
    packed.maxMainDataBegin = bitstream::MaxMainDataBegin(frame.facts.isLSF);
    const auto payload = std::span(frame.bytes).subspan(frame.PayloadOffset());
    const long long begin = m_payloadEnd - info.mainDataBegin;
    packed.isOpaque = info.mainDataBegin > m_payloads.size() ||
                      info.MainDataBytes() > info.mainDataBegin + payload.size() ||
                      begin < m_dataEnd;
    m_payloads.insert(m_payloads.end(), payload.begin(), payload.end());
    m_payloadEnd += static_cast<long long>(payload.size());
    if (!packed.isOpaque) {
        m_dataEnd = begin + packed.mainDataBytes;
        const auto from =
            m_payloads.end() - static_cast<std::ptrdiff_t>(payload.size()) - info.mainDataBegin;
        frame.mainData.assign(from, from + packed.mainDataBytes);
    }
    if (m_payloads.size() > kMostPayloads) {
        m_payloads.erase(m_payloads.begin(), m_payloads.end() - bitstream::MaxMainDataBegin(false));
    }
    return frame;
}
