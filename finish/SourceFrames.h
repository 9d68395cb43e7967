#pragma once

#include "bitstream/FrameFacts.h"
#include "cutting/FrameWalk.h"
#include "finish/MainDataPacker.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <span>
#include <utility>
#include <vector>

class CMPAFile;

/// A frame of the source with all that finishing may have to change.
struct SourceFrame {
    std::vector<std::uint8_t> bytes;
    std::vector<std::uint8_t> mainData; ///< that it decodes from; none of an opaque frame
    bitstream::FrameFacts facts;
    PackedFrame packed;
    bool wasHeader = false; ///< the header frame of another file, which no longer says so
    bool isForeign =
        false; ///< no Layer III frame, or one without room for main data: stays as it is

    /// Where its main data may begin; its end for a foreign one.
    std::size_t PayloadOffset() const {
        return isForeign ? bytes.size() : facts.SideInfoOffset() + facts.SideInfoBytes();
    }
};

/// The audio frames of an MP3, numbered from 0 without that of its VBR header, in one walk from
/// beginning to end. Where frames are joined they are loaded with their main data; in between they
/// go past as bytes. Throws what a FrameWalk throws.
class SourceFrames {
public:
    /// How many frames before one its main data may begin at most.
    static constexpr long long kReach = 100;

    /// Takes a frame as it stands in the source.
    using Witness = std::function<void(long long number, std::span<const std::uint8_t> bytes)>;

    explicit SourceFrames(CMPAFile& file);

    /// Shows every frame that is loaded or handed on from now on, once.
    void Compare(Witness witness) { m_witness = std::move(witness); }

    /// Samples of each channel in a frame, and how many there are in a second.
    unsigned int SamplesPerFrame() const { return m_facts.SamplesPerFrame(); }
    unsigned int RateHz() const { return m_facts.samplingRateHz; }
    bool IsLayerIII() const { return m_facts.layer == 2; }
    bool IsLSF() const { return m_facts.isLSF; }

    /// Makes [begin, end) available to Get, as far as there are frames. Never far back: what lies
    /// more than a few hundred frames behind the furthest one loaded is gone.
    void Load(long long begin, long long end);
    /// @return null for what is not loaded
    const SourceFrame* Get(long long number) const;
    /// The first frame that has not been walked past.
    long long Next() const { return m_walk.Number() - m_headerFrames + (m_isAtEnd ? 1 : 0); }
    bool IsAtEnd() const { return m_isAtEnd; }
    /// Hands on the bytes of the frames up to this one, which are not loaded.
    void Pass(long long end, const std::function<void(std::span<const std::uint8_t>)>& take);

private:
    std::span<std::uint8_t> ReadCurrent();
    SourceFrame Describe(std::span<const std::uint8_t> bytes);
    void SkipTo(long long number);
    void Step() { m_isAtEnd = !m_walk.Step(); }

    CMPAFile& m_file;
    FrameWalk m_walk;
    Witness m_witness;
    bool m_isAtEnd = false;
    long long m_headerFrames; // before the first one that holds audio
    bitstream::FrameFacts m_facts;
    std::deque<SourceFrame> m_loaded;
    long long m_firstLoaded = 0;
    std::vector<std::uint8_t> m_payloads; // of the last frames loaded
    long long m_payloadEnd = 0;           // where they end in the source's stream of payloads
    long long m_dataEnd = 0;              // where the main data of the last frame loaded end in it
};
