#include "cutting/WAVPlan.h"

#include "cutting/LittleEndian.h"
#include "cutting/WAVCorrections.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace {

using Chunk = WholeWAVLayout::Chunk;

// Larger than any chunk that says where something is; a larger one is copied as it is.
constexpr long long kMostCorrected = 16 * 1024 * 1024;
constexpr std::uint64_t kMost32Bits = 0xFFFFFFFE; // one more means: see the 64-bit size
constexpr std::uint64_t kIn64Bits = 0xFFFFFFFF;
// ds64: sizes of the file and of the samples, the number of these, then a table of other chunks.
constexpr long long kTableOffset = 24;
constexpr long long kSmallestSizes = kTableOffset + 4;

class Planner {
public:
    Planner(const WholeWAVLayout& source, const WAVChunkMap& map, const ReadSource& read)
        : m_source(source), m_map(map), m_read(read) {
        for (const Chunk& chunk : source.chunks) {
            if (chunk.id == "cue " && chunk.size <= kMostCorrected) {
                ReadCuePoints(read(chunk.Payload(), chunk.size), m_points);
            }
        }
    }

    std::vector<WAVStretch> Plan() {
        for (std::size_t i = 0; i < m_source.chunks.size(); ++i) {
            i == m_source.dataIndex ? AddSamples() : Add(m_source.chunks[i]);
        }
        AddSizes();
        // Whatever stands behind the last chunk stays behind it.
        m_stretches.push_back({"", m_source.chunksEnd, m_source.fileSize - m_source.chunksEnd});
        return std::move(m_stretches);
    }

private:
    void Add(const Chunk& chunk) {
        if (chunk.id == "ds64") {
            if (m_sizesTable.empty() && chunk.size >= kSmallestSizes &&
                chunk.size <= kMostCorrected) {
                m_sizesTable = m_read(chunk.Payload() + kTableOffset, chunk.size - kTableOffset);
            }
            m_sizesRoom = m_sizesRoom == 0 ? chunk.size : m_sizesRoom;
            return;
        }
        const std::string type = chunk.size >= 4 ? m_read(chunk.Payload(), 4) : "";
        if (!IsCorrected(chunk.id, type) || chunk.size > kMostCorrected) {
            AddHeader(chunk.id, chunk.size);
            m_stretches.push_back({"", chunk.Payload(), chunk.size});
            AddPad(chunk.size);
            return;
        }
        const auto payload =
            CorrectChunk(chunk.id, m_read(chunk.Payload(), chunk.size), m_points, m_map);
        if (payload) {
            const auto size = static_cast<long long>(payload->size());
            AddHeader(chunk.id, size);
            m_stretches.push_back({*payload});
            AddPad(size);
        }
    }

    void AddSamples() {
        const long long frame = m_source.blockAlign;
        const long long size = m_map.ResultFrames() * frame;
        m_dataHeader = m_stretches.size();
        AddHeader("data", size);
        for (const SampleRange& range : m_map.Kept()) {
            m_stretches.push_back({"", m_source.Data().Payload() + range.begin * frame,
                                   (range.end - range.begin) * frame});
        }
        AddPad(size);
    }

    void AddHeader(const std::string& id, long long size) {
        const auto bytes = static_cast<std::uint64_t>(size);
        m_stretches.push_back({id + LittleEndian(std::min(bytes, kIn64Bits), 4)});
    }

    void AddPad(long long size) {
        if (size % 2 == 1) {
            m_stretches.push_back({std::string(1, '\0')});
        }
    }

    // What comes first, as it tells of all the others. The room of 64-bit sizes that are not needed
    // (any more) stays.
    void AddSizes() {
        const long long chunks = std::accumulate(
            m_stretches.begin(), m_stretches.end(), 0LL, [](long long sum, const WAVStretch& s) {
                return sum + static_cast<long long>(s.bytes.size()) + s.sourceSize;
            });
        const long long room = std::min(m_sizesRoom + m_sizesRoom % 2, kMostCorrected);
        const std::string junk = m_sizesRoom == 0
                                     ? ""
                                     : "JUNK" + LittleEndian(static_cast<std::uint64_t>(room), 4) +
                                           std::string(static_cast<std::size_t>(room), '\0');
        const std::uint64_t size = 4 + junk.size() + static_cast<std::uint64_t>(chunks);
        std::string begin = "RIFF" + LittleEndian(size, 4) + "WAVE" + junk;
        if (size > kMost32Bits) {
            begin = LargeBegin(static_cast<std::uint64_t>(chunks));
            m_stretches[m_dataHeader].bytes = "data" + LittleEndian(kIn64Bits, 4);
        }
        m_stretches.insert(m_stretches.begin(), {begin});
    }

    std::string LargeBegin(std::uint64_t chunks) const {
        const std::string table = m_sizesTable.empty() ? LittleEndian(0, 4) : m_sizesTable;
        const std::size_t size = kTableOffset + table.size() + table.size() % 2;
        const auto frames = static_cast<std::uint64_t>(m_map.ResultFrames());
        const std::uint64_t all = 4 + Chunk::kHeaderSize + size + chunks;
        const std::string sizes =
            LittleEndian(all, 8) + LittleEndian(frames * m_source.blockAlign, 8) +
            LittleEndian(frames, 8) + table + std::string(table.size() % 2, '\0');
        const std::string form = m_source.form == "BW64" ? "BW64" : "RF64";
        return form + LittleEndian(kIn64Bits, 4) + "WAVEds64" + LittleEndian(size, 4) + sizes;
    }

    const WholeWAVLayout& m_source;
    const WAVChunkMap& m_map;
    const ReadSource& m_read;
    CuePoints m_points;
    std::vector<WAVStretch> m_stretches;
    std::size_t m_dataHeader = 0;
    std::string m_sizesTable;  // of ds64, from the number of entries on
    long long m_sizesRoom = 0; // of ds64, bytes; 0: there is none
};

} // namespace

std::vector<WAVStretch> PlanWAV(const WholeWAVLayout& source, const WAVChunkMap& map,
                                const ReadSource& read) {
    return Planner(source, map, read).Plan();
}
