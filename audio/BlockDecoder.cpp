#include "audio/BlockDecoder.h"

#include <algorithm>
#include <cerrno>
#include <utility>

BlockDecoder::BlockDecoder(std::shared_ptr<const File> file,
                           std::shared_ptr<const FrameIndex> index)
    : m_file(std::move(file)), m_index(std::move(index)), m_window(m_file),
      m_walker(m_window, m_index->Stream()), m_decoder(m_index->Stream().first),
      m_check(m_index->Stream().first), m_dropped(m_decoder.SamplesPerFrame()) {
}

void BlockDecoder::Begin(std::int64_t block) {
    const FrameIndex::Block& start = m_index->Blocks()[static_cast<std::size_t>(block)];
    m_frame = block * FrameIndex::kBlockFrames;
    const std::int64_t overlap = std::min(start.prerollFrames, FrameIndex::kOverlapFrames);
    m_isLost = false;
    m_window.ForgetError();
    m_decoder.Clear();
    m_check.Begin();
    m_doubts.clear();
    LeadThrough(start.offsetBytes, start.prerollFrames - overlap, overlap);
    if (m_check.IsDoubtful()) {
        m_check.Fail();
    }
}

bool BlockDecoder::BeginNear(std::int64_t frame) {
    const std::int64_t block = frame / FrameIndex::kBlockFrames;
    const auto doubts = m_index->Sound().Find(block);
    if (!doubts || (block != m_mappedBlock && !MapBlock(block))) {
        return false;
    }
    const std::vector<Lead> leads = PlanLeads(frame % FrameIndex::kBlockFrames, *doubts);
    if (leads.empty()) {
        return false;
    }
    m_frame = frame;
    m_isLost = false;
    m_decoder.Clear();
    for (const Lead& lead : leads) {
        LeadThrough(m_places[static_cast<std::size_t>(lead.first)].offsetBytes,
                    lead.decoded - lead.first, lead.end - lead.decoded);
    }
    m_check.Fail(); // a part of a block says nothing about the whole
    return true;
}

/// Finds where the frames of a block lie.
bool BlockDecoder::MapBlock(std::int64_t block) {
    const FrameIndex::Block& start = m_index->Blocks()[static_cast<std::size_t>(block)];
    const std::int64_t frames = start.prerollFrames + m_index->FramesOfBlock(block);
    m_mappedBlock = -1;
    m_places.clear();
    FrameWalker walker(m_window, m_index->Stream());
    walker.MoveTo(start.offsetBytes);
    for (std::int64_t i = 0; i < frames; ++i) {
        if (!walker.Next() || m_window.Error()) {
            m_window.ForgetError();
            return false;
        }
        if (i >= start.prerollFrames) {
            m_places.push_back({walker.OffsetBytes(), walker.Header().MainDataBytes()});
        }
    }
    m_mappedBlock = block;
    return true;
}

/// Through what to lead the decoder before a frame of the mapped block. The last frames that it
/// overlaps with must not be doubtful ones, as what those leave behind is unknown. All earlier
/// doubtful ones are decoded too: who gives up a frame has the phase of what follows shifted.
/// @return nothing when that takes as many frames as from the block's beginning
std::vector<BlockDecoder::Lead> BlockDecoder::PlanLeads(std::int64_t frame,
                                                        const SoundBlocks::Doubts& doubts) {
    constexpr std::int64_t kPhaseFrames = FrameIndex::kPhaseFrames;
    std::int64_t overlap = frame - FrameIndex::kOverlapFrames;
    auto earlier = std::ranges::lower_bound(doubts, frame);
    while (earlier != doubts.begin() && *std::prev(earlier) >= overlap) {
        --earlier;
        overlap = *earlier - FrameIndex::kOverlapFrames;
    }
    std::vector<Lead> leads;
    std::int64_t frames = 0;
    for (auto doubt = doubts.begin(); doubt != earlier; ++doubt) {
        leads.push_back({FillingFrom(*doubt, MainDataBegin(*doubt)), *doubt, *doubt + 1});
        frames += leads.back().end - leads.back().first;
    }
    const std::int64_t latest = FillingFrom(overlap, m_index->Stream().first.MaxReservoirBytes());
    const std::int64_t ahead = latest - frames;
    const std::int64_t surplus = (ahead % kPhaseFrames + kPhaseFrames) % kPhaseFrames;
    leads.push_back({latest - surplus, overlap, frame});
    frames += frame - leads.back().first;
    const bool isPossible =
        std::ranges::none_of(leads, [](const Lead& lead) { return lead.first < 0; });
    return isPossible && frames < frame ? leads : std::vector<Lead>();
}

std::uint32_t BlockDecoder::MainDataBegin(std::int64_t frame) {
    const FrameHeader& first = m_index->Stream().first;
    const std::int64_t offset = m_places[static_cast<std::size_t>(frame)].offsetBytes;
    const std::uint8_t* const bytes = m_window.Bytes(offset, FrameHeader::kBytes + 2 + 2);
    const auto header = bytes != nullptr ? FrameHeader::Parse(bytes) : std::nullopt;
    return header ? bitstream::SideInfo::ReadMainDataBegin(bytes + header->SideInfoOffset(),
                                                           header->lowSamplingRate)
                  : first.MaxReservoirBytes();
}

/// Where in the mapped block to begin for having so many bytes in the reservoir before a frame.
/// @return negative when there are not so many
std::int64_t BlockDecoder::FillingFrom(std::int64_t frame, std::uint32_t bytes) const {
    std::uint32_t filledBytes = 0;
    while (frame > 0 && filledBytes < bytes) {
        filledBytes += m_places[static_cast<std::size_t>(--frame)].mainDataBytes;
    }
    return filledBytes < bytes ? -1 : frame;
}

/// Leads the decoder through frames: some for what they leave in the reservoir, from which earlier
/// ones are gone, and some for their sound.
void BlockDecoder::LeadThrough(std::int64_t offsetBytes, std::int64_t filling,
                               std::int64_t decoded) {
    m_walker.MoveTo(offsetBytes);
    m_decoder.EmptyReservoir();
    for (; filling > 0 && Step(); --filling) {
        ReportUnless(m_decoder.FillReservoir(m_walker.Bytes(), m_walker.Header()));
    }
    m_check.SetReservoir(m_decoder.ReservoirBytes());
    for (; decoded > 0 && Step(); --decoded) {
        ReportUnless(DecodeCurrent(m_dropped.data()));
    }
}

void BlockDecoder::DecodeFrame(std::int16_t* samples) {
    if (!Step()) {
        std::fill_n(samples, SamplesPerFrame(), std::int16_t{0});
        m_check.Fail();
    } else {
        ReportUnless(DecodeCurrent(samples));
    }
    if (m_window.Error()) {
        Report(*m_window.Error());
    }
    NoteSoundness();
    ++m_frame;
}

/// A frame that was not decoded for want of memory is silence, and spoils what depends on it.
void BlockDecoder::ReportUnless(bool isDecoded) {
    if (!isDecoded) {
        Report({m_walker.OffsetBytes(), ENOMEM});
    }
}

/// Decodes the frame stepped to.
/// @return false for want of memory
bool BlockDecoder::DecodeCurrent(std::int16_t* samples) {
    const std::uint8_t* const frame = m_walker.Bytes();
    const FrameHeader& header = m_walker.Header();
    const bool isDecoded = m_decoder.Decode(frame, header.sizeBytes, samples);
    m_check.Add(frame, header, {samples, SamplesPerFrame()});
    return isDecoded;
}

/// Looks at the frame that was decoded, and at the block after its last one.
void BlockDecoder::NoteSoundness() {
    const std::int64_t block = m_frame / FrameIndex::kBlockFrames;
    const std::int64_t inBlock = m_frame % FrameIndex::kBlockFrames;
    if (m_check.IsDoubtful()) {
        m_doubts.push_back(inBlock);
    }
    if (m_check.IsSound() && inBlock + 1 == m_index->FramesOfBlock(block)) {
        m_index->Sound().Mark(block, m_doubts);
    }
}

/// Steps to the next frame.
/// @return false when there is none, or none that can be told
bool BlockDecoder::Step() {
    const bool isThere = !m_isLost && m_walker.Next();
    // The walk leaves out what it cannot read. The index has to have done so too.
    m_isLost = m_isLost || (m_window.Error() && !m_index->Failure());
    return isThere && !m_isLost;
}

void BlockDecoder::Report(const ReadError& cause) const {
    m_file->Failures().Report({m_frame * m_index->Stream().first.sampleFrames, cause});
}
