#include "finish/MainDataPacker.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

// What a join may still change: seats that are taken back, and seats that are enlarged.
constexpr std::size_t kMovedSeats = 6;
constexpr std::size_t kEnlargedSeats = 8;

/// The smallest bitrate, not below the frame's own, that gives so many more bytes, or the highest
/// that gives no more than the limit.
unsigned int RaisedIndex(const PackedFrame& frame, unsigned int from, long long wantedBytes,
                         long long limitBytes = std::numeric_limits<long long>::max()) {
    const long long own = frame.payloadBytes[from];
    unsigned int raised = from;
    for (unsigned int index = from; index < frame.payloadBytes.size(); ++index) {
        const long long gain = frame.payloadBytes[index] - own;
        if (gain > limitBytes) {
            break;
        }
        raised = index;
        if (gain >= wantedBytes) {
            break;
        }
    }
    return raised;
}

} // namespace

void MainDataPacker::AddCarriers(const PackedFrame& like, unsigned int bitrateIndex,
                                 unsigned int count, unsigned int needBytes) {
    const long long total = static_cast<long long>(count) * like.payloadBytes[bitrateIndex];
    m_dataEnd = m_payloadEnd + total - needBytes;
    for (unsigned int carrier = 0; carrier < count; ++carrier) {
        Seat seat{.frame = like, .bitrateIndex = bitrateIndex, .isEmpty = true, .id = -1};
        seat.mainDataBegin = static_cast<unsigned int>(std::max(0LL, m_payloadEnd - m_dataEnd));
        seat.payload = m_payloadEnd;
        seat.data = m_payloadEnd - seat.mainDataBegin;
        seat.dataBefore = m_dataEnd;
        m_payloadEnd += seat.PayloadBytes();
        m_seats.push_back(seat);
    }
}

MainDataPacker::Placed MainDataPacker::Place(const PackedFrame& frame, long long id) {
    Seat seat{.frame = frame,
              .bitrateIndex = frame.bitrateIndex,
              .mainDataBegin = frame.mainDataBegin,
              .id = id};
    const long long wanted = m_payloadEnd - frame.mainDataBegin;
    seat.data = wanted;
    if (frame.isOpaque) {
        Add(seat);
        return Placed::Opaque;
    }
    if (wanted >= m_dataEnd) {
        Add(seat);
        m_dataEnd = wanted + frame.mainDataBytes;
        return Placed::InStep;
    }
    const long long late = m_dataEnd - wanted;
    seat.bitrateIndex = RaisedIndex(frame, frame.bitrateIndex, late);
    if (m_dataEnd + frame.mainDataBytes > m_payloadEnd + seat.PayloadBytes()) {
        return Placed::DoesNotFit;
    }
    seat.mainDataBegin = static_cast<unsigned int>(m_payloadEnd - m_dataEnd);
    seat.data = m_dataEnd;
    Add(seat);
    m_dataEnd += frame.mainDataBytes;
    return Placed::Late;
}

void MainDataPacker::PlaceEmpty(const PackedFrame& frame, long long id) {
    Seat seat{.frame = frame, .bitrateIndex = frame.bitrateIndex, .isEmpty = true, .id = id};
    // It must not point behind what a later frame needs: a decoder keeps no more of the past than
    // the current frame asks for.
    seat.mainDataBegin = static_cast<unsigned int>(
        std::min<long long>(frame.maxMainDataBegin, m_payloadEnd - m_dataEnd));
    seat.data = m_payloadEnd - seat.mainDataBegin;
    const long long data = seat.data;
    Add(seat);
    m_dataEnd = data;
}

void MainDataPacker::Pop() {
    m_payloadEnd = m_seats.back().payload;
    m_dataEnd = m_seats.back().dataBefore;
    m_seats.pop_back();
}

bool MainDataPacker::Enlarge(long long freeBytes) {
    for (std::size_t i = 0; i < std::min(kEnlargedSeats, m_seats.size()); ++i) {
        const long long missing = freeBytes - (m_payloadEnd - m_dataEnd);
        if (missing <= 0) {
            break;
        }
        const std::size_t number = m_seats.size() - 1 - i;
        const Seat& seat = m_seats[number];
        const unsigned int raised =
            RaisedIndex(seat.frame, seat.bitrateIndex, missing, LeastSlack(number + 1));
        if (raised != seat.bitrateIndex && !seat.frame.isOpaque) {
            Raise(number, raised, seat.frame.payloadBytes[raised] - seat.PayloadBytes());
        }
        if (seat.frame.isOpaque) {
            break; // what it points to must not move away
        }
    }
    return m_payloadEnd - m_dataEnd >= freeBytes;
}

/// How much further back the seats from this one on can point.
unsigned int MainDataPacker::LeastSlack(std::size_t firstSeat) const {
    unsigned int slack = std::numeric_limits<unsigned int>::max();
    for (std::size_t i = firstSeat; i < m_seats.size(); ++i) {
        slack = std::min(slack, m_seats[i].frame.maxMainDataBegin - m_seats[i].mainDataBegin);
    }
    return slack;
}

void MainDataPacker::Raise(std::size_t seat, unsigned int bitrateIndex, unsigned int gainBytes) {
    m_seats[seat].bitrateIndex = bitrateIndex;
    for (std::size_t later = seat + 1; later < m_seats.size(); ++later) {
        m_seats[later].payload += gainBytes;
        m_seats[later].mainDataBegin += gainBytes;
    }
    m_payloadEnd += gainBytes;
}

std::size_t MainDataPacker::Settled() const {
    constexpr long long kMaxMainDataBegin = 511;
    const std::size_t changeable = std::min(m_seats.size(), kMovedSeats + kEnlargedSeats);
    std::size_t settled = 0;
    while (settled < m_seats.size() - changeable &&
           m_seats[settled].payload + m_seats[settled].PayloadBytes() <=
               m_payloadEnd - 2 * kMaxMainDataBegin) {
        ++settled;
    }
    return settled;
}

void MainDataPacker::Drop(std::size_t seats) {
    m_seats.erase(m_seats.begin(), m_seats.begin() + static_cast<std::ptrdiff_t>(seats));
    const long long begin = m_seats.empty() ? m_payloadEnd : m_seats.front().payload;
    std::erase_if(m_gaps, [&](const Gap& gap) { return gap.end <= begin; });
}

void MainDataPacker::Restart() {
    constexpr long long kFarBack = -100'000;
    m_seats.clear();
    m_gaps.clear();
    m_payloadEnd = 0;
    m_dataEnd = kFarBack;
}

void MainDataPacker::Add(Seat seat) {
    seat.payload = m_payloadEnd;
    seat.dataBefore = m_dataEnd;
    m_payloadEnd += seat.PayloadBytes();
    m_seats.push_back(std::move(seat));
}
