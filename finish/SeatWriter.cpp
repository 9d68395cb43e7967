#include "finish/SeatWriter.h"

#include "bitstream/SideInfo.h"

#include <algorithm>

namespace {

using Seat = MainDataPacker::Seat;

/// A part of the stream of payloads.
class PayloadBuffer {
public:
    PayloadBuffer(long long begin, long long end)
        : m_begin(begin), m_bytes(static_cast<std::size_t>(end - begin)) {}

    /// What lies outside is left out.
    void Put(long long at, std::span<const std::uint8_t> bytes) {
        const long long begin = std::max(at, m_begin);
        const long long end = std::min(at + static_cast<long long>(bytes.size()), End());
        if (begin < end) {
            std::copy(bytes.begin() + (begin - at), bytes.begin() + (end - at),
                      m_bytes.begin() + (begin - m_begin));
        }
    }
    void Clear(long long begin, long long end) {
        begin = std::max(begin, m_begin);
        end = std::min(end, End());
        if (begin < end) {
            std::fill(m_bytes.begin() + (begin - m_begin), m_bytes.begin() + (end - m_begin),
                      std::uint8_t{0});
        }
    }
    std::span<const std::uint8_t> Part(long long begin, std::size_t size) const {
        return std::span(m_bytes).subspan(static_cast<std::size_t>(begin - m_begin), size);
    }

private:
    long long End() const { return m_begin + static_cast<long long>(m_bytes.size()); }

    long long m_begin;
    std::vector<std::uint8_t> m_bytes;
};

/// A frame up to its payload, as its seat has it.
std::vector<std::uint8_t> HeadOf(const Seat& seat, const SourceFrame& frame) {
    constexpr unsigned int kPaddingBit = 2;
    if (frame.isForeign) {
        return frame.bytes;
    }
    std::vector<std::uint8_t> head(frame.bytes.begin(),
                                   frame.bytes.begin() +
                                       static_cast<std::ptrdiff_t>(frame.PayloadOffset()));
    head[2] = static_cast<std::uint8_t>(seat.bitrateIndex << 4 | (head[2] & 0x0FU));
    if (seat.id < 0) {
        head[2] = static_cast<std::uint8_t>(head[2] & ~kPaddingBit);
    }
    const auto sideInfo = std::span(head).subspan(frame.facts.SideInfoOffset());
    if (seat.isEmpty) {
        std::ranges::fill(sideInfo, std::uint8_t{0});
    }
    bitstream::SideInfo::WriteMainDataBegin(sideInfo.data(), frame.facts.isLSF, seat.mainDataBegin);
    if (frame.facts.isCRCProtected && seat.IsAltered()) {
        const std::uint16_t crc = bitstream::FrameCRC(head.data(), sideInfo);
        head[4] = static_cast<std::uint8_t>(crc >> 8);
        head[5] = static_cast<std::uint8_t>(crc);
    }
    return head;
}

} // namespace

void WriteSeats(MainDataPacker& packer, std::size_t seats,
                const std::map<long long, SourceFrame>& frames, FinishedFile& file) {
    if (seats == 0) {
        return;
    }
    const std::span<const Seat> all = packer.Seats();
    const auto frameOf = [&](const Seat& seat) -> const SourceFrame& { return frames.at(seat.id); };
    PayloadBuffer payloads(all.front().payload,
                           all[seats - 1].payload + all[seats - 1].PayloadBytes());
    for (const Seat& seat : all.first(seats)) {
        if (!seat.isEmpty) {
            // What follows it in its source points back from its end.
            const auto payload =
                std::span(frameOf(seat).bytes).subspan(frameOf(seat).PayloadOffset());
            payloads.Put(seat.payload + seat.PayloadBytes() -
                             static_cast<long long>(payload.size()),
                         payload);
        }
    }
    for (const MainDataPacker::Gap& gap : packer.Gaps()) {
        payloads.Clear(gap.begin, gap.end);
    }
    for (const Seat& seat : all) {
        if (!seat.isEmpty && !seat.frame.isOpaque) {
            payloads.Put(seat.data, frameOf(seat).mainData);
        }
    }
    for (const Seat& seat : all.first(seats)) {
        std::vector<std::uint8_t> bytes = HeadOf(seat, frameOf(seat));
        const auto payload = payloads.Part(seat.payload, seat.PayloadBytes());
        bytes.insert(bytes.end(), payload.begin(), payload.end());
        file.WriteFrame(bytes, seat.id >= 0 && seat.bitrateIndex == seat.frame.bitrateIndex);
    }
    packer.Drop(seats);
}
