#include "audio/PeakMeter.h"

#include "audio/PeakIndexCache.h"
#include "audio/SampleLanes.h"

#include <algorithm>
#include <new>
#include <utility>

PeakMeter::PeakMeter(std::unique_ptr<Decoder> decoder, std::shared_ptr<const File> file)
    : m_decoder(std::move(decoder)), m_file(std::move(file)),
      m_index(m_file && !m_decoder->Failure()
                  ? PeakIndexCache::Shared().IndexOf(m_file->State(), m_decoder->Format(),
                                                     m_decoder->CostOfSeeking())
                  : nullptr) {
}

PeakMeter::~PeakMeter() {
    Leave();
}

PeakLevels PeakMeter::Measure(std::int64_t begin, std::int64_t end) {
    return UsesIndex() ? MeasureWithIndex(begin, end) : Decode(begin, end);
}

void PeakMeter::Complete() {
    constexpr std::int64_t kMostSeconds = 2;
    const AudioFormat& format = m_decoder->Format();
    if (m_filling && format.sampleFrames - m_filling->position <= kMostSeconds * format.rateHz &&
        m_filling->position < format.sampleFrames) {
        Measure(m_filling->position, format.sampleFrames);
    }
}

void PeakMeter::Leave() {
    m_checkedTime = {};
    if (m_filling && m_index->Resume(this)) {
        PublishFilling();
    }
    m_filling.reset();
    if (m_index) {
        m_index->Leave(this);
    }
}

/// Whether the file is still the one that the levels are of.
bool PeakMeter::UsesIndex() {
    constexpr std::chrono::milliseconds kInterval{1};
    if (m_index == nullptr || m_isStale) {
        return false;
    }
    const auto now = std::chrono::steady_clock::now();
    if (now - m_checkedTime < kInterval) {
        return true;
    }
    m_checkedTime = now;
    return IsFileCurrent();
}

bool PeakMeter::IsFileCurrent() {
    if (!m_isStale && m_file->CurrentState() != m_file->State()) {
        m_isStale = true;
        m_filling.reset();
        m_index->Leave(this);
        PeakIndexCache::Shared().Forget(m_index);
    }
    return !m_isStale;
}

PeakLevels PeakMeter::MeasureWithIndex(std::int64_t begin, std::int64_t end) {
    if (m_filling) {
        if (m_filling->position == begin && m_index->Resume(this)) {
            return Fill(begin, end);
        }
        Leave();
    }
    const std::int64_t known = m_index->Await(this, begin, end);
    if (begin >= known || end <= known) {
        return end <= known     ? MeasureKnown(begin, end)
               : begin == known ? Fill(begin, end)
                                : Decode(begin, end);
    }
    const PeakLevels levels = MeasureKnown(begin, known);
    return Larger(levels, Fill(known, end));
}

/// Decodes and remembers: from the end of what is known, or where the last call left off.
PeakLevels PeakMeter::Fill(std::int64_t begin, std::int64_t end) {
    constexpr std::int64_t kPublishedSeconds = 1;
    if (!m_filling) {
        const std::int64_t granule = m_index->Grid().FirstFrom(begin);
        m_filling.emplace(Filling{{m_index->Grid(), granule}, begin, {}, granule});
    }
    PeakSamples peaks;
    while (begin < end) {
        const auto samples = Read(begin, end - begin);
        if (samples.empty()) {
            break;
        }
        peaks.Raise(AddToFilling(samples));
        begin = m_filling->position;
    }
    const AudioFormat& format = m_decoder->Format();
    if (begin == format.sampleFrames ||
        begin - m_index->Grid().Begin(m_filling->published) > kPublishedSeconds * format.rateHz) {
        PublishFilling();
    }
    m_index->Pause();
    if (m_decoder->Failure()) {
        // Silence may have stood in for sound.
        m_filling.reset();
        m_index->Leave(this);
    }
    return peaks.Levels();
}

PeakSamples PeakMeter::AddToFilling(std::span<const std::int16_t> samples) {
    const std::uint32_t channels = m_decoder->Format().channels;
    PeakSamples all;
    while (!samples.empty()) {
        samples = samples.subspan(AddGranules(samples, all));
        const auto left = static_cast<std::int64_t>(samples.size() / channels);
        const std::int64_t count = std::min(left, m_filling->granule.End() - m_filling->position);
        const auto part = static_cast<std::size_t>(count) * channels;
        const PeakSamples peaks = MeasurePeaks(samples.first(part), channels);
        all.Raise(peaks);
        m_filling->peaks.Raise(peaks);
        samples = samples.subspan(part);
        m_filling->position += count;
        while (m_filling->granule.End() == m_filling->position &&
               m_filling->granule.Granule() < m_index->Grid().Count()) {
            m_index->WriterAt(m_filling->granule.Granule()).Write(m_filling->peaks);
            m_filling->peaks = {};
            m_filling->granule.Next();
        }
    }
    return all;
}

/// Adds the short granules that the samples hold whole, up to the first that they do not: a shorter
/// way for nearly all of them.
/// @param all  is raised by their peaks
/// @return how many samples those are
std::size_t PeakMeter::AddGranules(std::span<const std::int16_t> samples, PeakSamples& all) {
    constexpr std::size_t kMostSamples = 128;
    // Of its own, so that it can stay in registers.
    PeakGrid::Walk walk = m_filling->granule;
    if (m_decoder->Format().channels != 2 || m_filling->position != walk.Begin()) {
        return 0;
    }
    PeakSamples highest = all;
    std::size_t added = 0;
    for (PeakIndex::Writer to = m_index->WriterAt(walk.Granule());;) {
        const auto size = static_cast<std::size_t>(walk.End() - walk.Begin()) * 2;
        if (size < kLanes || size > kMostSamples || size > samples.size() - added) {
            break;
        }
        const PeakSamples peaks = MeasurePairs(samples.data() + added, size);
        highest.Raise(peaks);
        to.Write(peaks);
        added += size;
        walk.Next();
    }
    all = highest;
    m_filling->granule = walk;
    m_filling->position = walk.Begin();
    return added;
}

/// Makes known what was decoded from the file as it was opened, without a failure.
void PeakMeter::PublishFilling() {
    const std::int64_t granule = m_filling->granule.Granule();
    if (granule > m_filling->published && !m_decoder->Failure() &&
        m_file->CurrentState() == m_file->State()) {
        m_index->Publish(granule);
        m_filling->published = granule;
    }
}

/// The levels of a stretch whose granules are all known.
PeakLevels PeakMeter::MeasureKnown(std::int64_t begin, std::int64_t end) {
    const PeakGrid& grid = m_index->Grid();
    const std::int64_t first = grid.FirstFrom(begin);
    const std::int64_t last = grid.LastUpTo(end);
    PeakLevels levels = m_index->Peaks(first, last);
    if (first > last) {
        AddEdge(begin, end, last, levels);
        return levels;
    }
    AddEdge(begin, grid.Begin(first), first - 1, levels);
    AddEdge(grid.Begin(last), end, last, levels);
    return levels;
}

/// Adds a part of a granule, which need not be decoded when all of it is no louder.
void PeakMeter::AddEdge(std::int64_t begin, std::int64_t end, std::int64_t granule,
                        PeakLevels& levels) {
    if (begin >= end) {
        return;
    }
    const PeakLevels most = m_index->Peaks(granule, granule + 1);
    if (most.left <= levels.left && most.right <= levels.right) {
        return;
    }
    Decoder& decoder = EdgeDecoder();
    decoder.Seek(begin);
    while (begin < end) {
        const auto samples = decoder.Read(end - begin);
        if (samples.empty()) {
            break;
        }
        levels = Larger(levels, MeasurePeaks(samples, decoder.Format().channels).Levels());
        begin += static_cast<std::int64_t>(samples.size() / decoder.Format().channels);
    }
}

Decoder& PeakMeter::EdgeDecoder() {
    if (m_edges == nullptr) {
        try {
            m_edges = m_decoder->ForRandomAccess();
        } catch (const std::bad_alloc&) {
            m_position = -1;
            return *m_decoder;
        }
    }
    return *m_edges;
}

PeakLevels PeakMeter::Decode(std::int64_t begin, std::int64_t end) {
    PeakLevels levels;
    while (begin < end) {
        const auto samples = Read(begin, end - begin);
        if (samples.empty()) {
            break;
        }
        levels = Larger(levels, MeasurePeaks(samples, m_decoder->Format().channels).Levels());
        begin = m_position;
    }
    return levels;
}

std::span<const std::int16_t> PeakMeter::Read(std::int64_t position, std::int64_t maxSampleFrames) {
    if (m_position != position) {
        m_decoder->Seek(position);
        m_position = position;
    }
    const auto samples = m_decoder->Read(maxSampleFrames);
    m_position += static_cast<std::int64_t>(samples.size() / m_decoder->Format().channels);
    return samples;
}
