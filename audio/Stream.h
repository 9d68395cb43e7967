#pragma once

#include "audio/Decoder.h"
#include "audio/PeakLevels.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

/// An opened file, as the library's calls see it: either one to play or one to decode and measure.
/// Positions are in sample frames. What a kind of stream cannot do fails and changes nothing.
///
/// Any thread.
class Stream {
public:
    explicit Stream(const AudioFormat& format) : m_format(format) {}
    virtual ~Stream() = default;
    Stream(const Stream&) = delete;
    Stream& operator=(const Stream&) = delete;

    const AudioFormat& Format() const { return m_format; }

    virtual std::int64_t Position() = 0;
    /// @param sampleFrame  0 to the length inclusive
    [[nodiscard]] virtual bool SetPosition(std::int64_t sampleFrame) = 0;
    /// Playing, or not yet decoded to the end.
    virtual bool IsActive() = 0;
    /// See Decoder::SeekInfo.
    virtual std::vector<std::int64_t> SeekInfo() const = 0;
    /// See Decoder::Failure; waits for nothing.
    virtual std::optional<ReadFailure> Failure() const = 0;

    /// Measures and consumes the next stretch. With T the sum of the lengths asked for since the
    /// stream was opened or positioned, it ends floor(T x rate + 0.5) sample frames after that
    /// point.
    /// @param seconds  0 < seconds <= 1
    /// @return false when nothing was left to measure; levels are then untouched
    [[nodiscard]] virtual bool MeasureLevels(double /*seconds*/, PeakLevels& /*levels*/) {
        return false;
    }

    /// Up to where the levels of the file are known, in sample frames. Waits for nothing.
    virtual std::int64_t LevelsKnown() const { return 0; }
    /// Has the last moments of the file measured, when all before them is.
    virtual void CompleteLevels() {}

    /// Plays from the current position, or the beginning when told to or at the end.
    [[nodiscard]] virtual bool Play(bool /*restart*/) { return false; }
    [[nodiscard]] virtual bool Stop() { return false; }
    /// Has the callback called, on a thread of the library, each time the stream has played to its
    /// end, unless it is playing again by then.
    [[nodiscard]] virtual bool AddEndCallback(const std::function<void()>& /*callback*/) {
        return false;
    }

    /// To be called once, before the stream is let go of. Nothing plays afterwards and no callback
    /// is running or will, save one that this is called from; play, stop and the like then fail.
    virtual void Close() {}

private:
    const AudioFormat m_format;
};
