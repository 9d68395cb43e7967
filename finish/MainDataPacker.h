#pragma once

#include <array>
#include <optional>
#include <vector>

/// What the packer has to know of a Layer III frame. Bytes throughout.
struct PackedFrame {
    /// Room for main data in a frame like it, by bitrate index; its own bitrate's among them, 0
    /// where there is none.
    std::array<unsigned int, 15> payloadBytes{};
    unsigned int bitrateIndex = 0;
    unsigned int mainDataBegin = 0;    ///< how far before its own payload its main data begin
    unsigned int mainDataBytes = 0;    ///< of main data
    unsigned int maxMainDataBegin = 0; ///< 511 or 255
    bool isOpaque = false;             ///< cannot be moved, as its main data are not all there
};

/// Finds places for the main data of frames that come together from different parts of a file, so
/// that each of them is decoded from all of its own (ISO/IEC 11172-3, 2.4.2.7 and 2.4.3.4).
///
/// The payloads of all frames form one stream of bytes. In it the main data of the frames stand in
/// the frames' order, none further before its frame's payload than the frame can point, and none
/// behind its end. Where there is too little room, frames get a higher bitrate, that is more
/// payload. Pure: knows lengths, and no bytes. Cheap to copy, so that something can be tried.
class MainDataPacker {
public:
    /// A frame of the output.
    struct Seat {
        PackedFrame frame;
        unsigned int bitrateIndex = 0;
        unsigned int mainDataBegin = 0;
        bool isEmpty = false;     ///< holds no main data of its own, whatever the frame did
        long long payload = 0;    ///< where its payload begins in the stream
        long long data = 0;       ///< where its main data begin; those of an opaque frame: unknown
        long long dataBefore = 0; ///< where the main data before it end
        long long id = 0;         ///< the caller's

        unsigned int PayloadBytes() const { return frame.payloadBytes[bitrateIndex]; }
        /// Whether it is to be written other than it was.
        bool IsAltered() const {
            return isEmpty || bitrateIndex != frame.bitrateIndex ||
                   mainDataBegin != frame.mainDataBegin;
        }
    };
    /// Bytes of the stream that nobody needs any more.
    struct Gap {
        long long begin;
        long long end;
    };

    /// What became of a frame.
    enum class Placed { InStep, Late, Opaque, DoesNotFit };

    /// Room in front of the first frame: empty frames, which hold what it needs.
    /// @param needBytes  that it points back
    void AddCarriers(const PackedFrame& like, unsigned int bitrateIndex, unsigned int count,
                     unsigned int needBytes);

    /// Adds a frame, where its main data lie already or behind those before. InStep: as it was, and
    /// so will be all that follow it in its source.
    Placed Place(const PackedFrame& frame, long long id);
    /// Adds a frame whose sound is given up; what follows gets its payload.
    void PlaceEmpty(const PackedFrame& frame, long long id);
    /// Takes the last frame away again.
    void Pop();

    /// Frames from another place follow.
    void BeginRun() { m_gaps.push_back({m_dataEnd, m_payloadEnd}); }
    /// Makes room before what follows by raising the bitrates of the last frames.
    /// @param freeBytes  that there should be
    /// @return whether there are so many now
    bool Enlarge(long long freeBytes);

    /// Forgets the first seats, which have been written.
    void Drop(std::size_t seats);
    /// Begins anew: what comes next is in step with all before.
    void Restart();
    /// How many of the first seats nothing that follows can change.
    std::size_t Settled() const;

    const std::vector<Seat>& Seats() const { return m_seats; }
    const std::vector<Gap>& Gaps() const { return m_gaps; }
    long long PayloadEnd() const { return m_payloadEnd; }
    long long DataEnd() const { return m_dataEnd; }

private:
    void Add(Seat seat);
    void Raise(std::size_t seat, unsigned int bitrateIndex, unsigned int gainBytes);
    unsigned int LeastSlack(std::size_t firstSeat) const;

    std::vector<Seat> m_seats;
    std::vector<Gap> m_gaps;
    long long m_payloadEnd = 0;
    long long m_dataEnd = 0;
};
