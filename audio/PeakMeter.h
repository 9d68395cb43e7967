#pragma once

#include "audio/Decoder.h"
#include "audio/File.h"
#include "audio/PeakIndex.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

/// Measures stretches of one file: from the peaks that are remembered of it, as far as they are
/// known, and by decoding. What it decodes next to what is known becomes known. The levels are the
/// same either way.
///
/// Positions are in sample frames. One thread at a time but for Known.
class PeakMeter {
public:
    /// @param file  null: nothing is remembered
    PeakMeter(std::unique_ptr<Decoder> decoder, std::shared_ptr<const File> file);
    ~PeakMeter();
    PeakMeter(const PeakMeter&) = delete;
    PeakMeter& operator=(const PeakMeter&) = delete;

    const Decoder& Source() const { return *m_decoder; }

    /// Up to where the levels are known. Any thread; does not wait.
    std::int64_t Known() const { return m_index ? m_index->Known() : 0; }

    /// The levels of [begin, end), which is not empty.
    PeakLevels Measure(std::int64_t begin, std::int64_t end);

    /// Measures what little a scan has left of the end of the file.
    void Complete();

    /// The next stretch lies elsewhere: lets somebody else go on with what is not known yet.
    void Leave();

private:
    /// What is being added to the index.
    struct Filling {
        PeakGrid::Walk granule; // that is being measured
        std::int64_t position;  // up to where it was
        PeakSamples peaks;      // of that part
        std::int64_t published; // granules below are known
    };

    [[nodiscard]] bool UsesIndex();
    [[nodiscard]] bool IsFileCurrent();
    PeakLevels MeasureWithIndex(std::int64_t begin, std::int64_t end);
    PeakLevels Fill(std::int64_t begin, std::int64_t end);
    PeakLevels MeasureKnown(std::int64_t begin, std::int64_t end);
    void AddEdge(std::int64_t begin, std::int64_t end, std::int64_t granule, PeakLevels& levels);
    PeakLevels Decode(std::int64_t begin, std::int64_t end);
    std::span<const std::int16_t> Read(std::int64_t position, std::int64_t maxSampleFrames);
    std::size_t AddGranules(std::span<const std::int16_t> samples, PeakSamples& all);
    PeakSamples AddToFilling(std::span<const std::int16_t> samples);
    void PublishFilling();
    Decoder& EdgeDecoder();

    const std::unique_ptr<Decoder> m_decoder;
    const std::shared_ptr<const File> m_file;
    const std::shared_ptr<PeakIndex> m_index; // null: nothing is remembered
    bool m_isStale = false;                   // the file has changed; the index is of no use
    std::chrono::steady_clock::time_point m_checkedTime;
    std::unique_ptr<Decoder> m_edges; // for short stretches; made for the first of them
    std::int64_t m_position = 0;      // of the decoder
    std::optional<Filling> m_filling;
};
