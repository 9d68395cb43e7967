#include "audio/SoundnessCheck.h"

#include <algorithm>

void SoundnessCheck::Add(const std::uint8_t* frame, const FrameHeader& header,
                         std::span<const std::int16_t> samples) {
    m_isDoubtful = false;
    // How much of a Layer I or II frame is used stands all over it. A damaged one makes libmpg123
    // read on into what an earlier frame left there.
    if (!m_isSound) {
        return;
    }
    if (frame == nullptr || header.layer != 3 || header.MainDataBytes() == 0 ||
        header.channels != m_first.channels) {
        Fail();
        return;
    }
    const auto info = bitstream::SideInfo::Read(frame + header.SideInfoOffset(),
                                                header.lowSamplingRate, header.channels == 1);
    m_isSound = Follows(info, header.MainDataBytes());
    m_isDoubtful = info.MainDataBytes() > 0 && EndsInZeros(samples);
}

/// Whether the last granule of a frame is silent.
bool SoundnessCheck::EndsInZeros(std::span<const std::int16_t> samples) const {
    const std::size_t granules = m_first.lowSamplingRate ? 1 : 2;
    const auto end = samples.last(samples.size() / granules);
    return std::ranges::all_of(end, [](std::int16_t sample) { return sample == 0; });
}

/// Whether the frame finds all of its main data in the reservoir and in itself.
bool SoundnessCheck::Follows(const bitstream::SideInfo& info, std::uint32_t payloadBytes) {
    const std::uint32_t heldBytes = info.mainDataBegin + payloadBytes;
    const bool isWhole =
        info.mainDataBegin <= m_reservoirBytes && info.MainDataBytes() <= heldBytes;
    // The decoder keeps no more of the past than a frame asks for.
    m_reservoirBytes = std::min(heldBytes, m_first.MaxReservoirBytes());
    return isWhole && info.IsSound();
}
