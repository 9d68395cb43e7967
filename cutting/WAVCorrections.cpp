#include "cutting/WAVCorrections.h"

#include "cutting/LittleEndian.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::uint32_t kUnknown = std::numeric_limits<std::uint32_t>::max();

using Correction = std::optional<std::string>;

std::uint32_t Get32(const std::string& bytes, std::size_t offset) {
    return static_cast<std::uint32_t>(GetLittleEndian(bytes, offset, 4));
}

/// A list of equal entries behind their count.
struct Entries {
    std::size_t begin; // of the first one
    std::size_t size;  // of each
    std::size_t count; // that are there

    Entries(const std::string& payload, std::size_t countOffset, std::size_t entriesBegin,
            std::size_t entrySize)
        : begin(entriesBegin), size(entrySize),
          count(payload.size() < entriesBegin
                    ? 0
                    : std::min<std::size_t>(Get32(payload, countOffset),
                                            (payload.size() - entriesBegin) / entrySize)) {}

    std::string At(const std::string& payload, std::size_t index) const {
        return payload.substr(begin + index * size, size);
    }
    std::size_t End() const { return begin + count * size; }
};

// The entries that a correction leaves, corrected. What stands before the count, between it and
// the entries and behind them stays.
template <typename CorrectEntry>
Correction CorrectEntries(const std::string& payload, std::size_t countOffset,
                          const Entries& entries, CorrectEntry correct) {
    std::string result = payload.substr(0, entries.begin);
    std::uint32_t count = 0;
    for (std::size_t i = 0; i < entries.count; ++i) {
        if (const Correction entry = correct(entries.At(payload, i))) {
            result += *entry;
            ++count;
        }
    }
    PutLittleEndian(result, countOffset, 4, count);
    return result + payload.substr(entries.End());
}

constexpr std::size_t kCuePointBytes = 24;
constexpr std::size_t kSampleOffsetInPoint = 20;

Entries CueEntries(const std::string& payload) {
    return {payload, 0, 4, kCuePointBytes};
}

Correction CorrectCue(const std::string& payload, const WAVChunkMap& map) {
    const Entries entries = CueEntries(payload);
    if (entries.count == 0) {
        return payload;
    }
    const Correction result = CorrectEntries(payload, 0, entries, [&](std::string point) {
        const std::uint32_t offset = Get32(point, kSampleOffsetInPoint);
        const auto mapped = map.Map(offset);
        if (!mapped) {
            return Correction();
        }
        constexpr std::size_t kPositionInPoint = 4;
        if (Get32(point, kPositionInPoint) == offset) {
            PutLittleEndian(point, kPositionInPoint, 4, static_cast<std::uint64_t>(*mapped));
        }
        PutLittleEndian(point, kSampleOffsetInPoint, 4, static_cast<std::uint64_t>(*mapped));
        return Correction(point);
    });
    return Get32(*result, 0) == 0 ? std::nullopt : result;
}

/// What has become of the point that an entry belongs to. One that belongs to none is left alone.
enum class Fate { None, Kept, Removed };

Fate FateOf(std::uint32_t name, const CuePoints& points, const WAVChunkMap& map) {
    const auto point = points.find(name);
    return point == points.end() ? Fate::None : map.Map(point->second) ? Fate::Kept : Fate::Removed;
}

// The length of a stretch that begins at a point.
void CorrectLength(std::string& entry, std::size_t offset, const CuePoints& points,
                   const WAVChunkMap& map) {
    const long long begin = points.at(Get32(entry, 0));
    const std::uint32_t length = Get32(entry, offset);
    PutLittleEndian(entry, offset, 4,
                    static_cast<std::uint64_t>(map.KeptIn({begin, begin + length})));
}

Correction CorrectPlaylist(const std::string& payload, const CuePoints& points,
                           const WAVChunkMap& map) {
    constexpr std::size_t kSegmentBytes = 12;
    const Entries entries(payload, 0, 4, kSegmentBytes);
    if (entries.count == 0) {
        return payload;
    }
    const Correction result = CorrectEntries(payload, 0, entries, [&](std::string segment) {
        const Fate fate = FateOf(Get32(segment, 0), points, map);
        if (fate == Fate::Kept) {
            CorrectLength(segment, 4, points, map);
        }
        return fate == Fate::Removed ? Correction() : Correction(segment);
    });
    return Get32(*result, 0) == 0 ? std::nullopt : result;
}

Correction CorrectSampler(const std::string& payload, const WAVChunkMap& map) {
    constexpr std::size_t kCountOffset = 28;
    constexpr std::size_t kLoopsOffset = 36;
    constexpr std::size_t kLoopBytes = 24;
    const Entries entries(payload, kCountOffset, kLoopsOffset, kLoopBytes);
    if (payload.size() < kLoopsOffset) {
        return payload;
    }
    return CorrectEntries(payload, kCountOffset, entries, [&](std::string loop) {
        const long long first = Get32(loop, 8);
        const long long last = Get32(loop, 12); // is played too
        const auto begin = map.Map(first);
        if (!begin || last < first || map.KeptIn({first, last + 1}) != last + 1 - first) {
            return Correction();
        }
        PutLittleEndian(loop, 8, 4, static_cast<std::uint64_t>(*begin));
        PutLittleEndian(loop, 12, 4, static_cast<std::uint64_t>(*begin + last - first));
        return Correction(loop);
    });
}

// One label, note or labelled text of an adtl list.
Correction CorrectText(const std::string& id, std::string payload, const CuePoints& points,
                       const WAVChunkMap& map) {
    if (payload.size() < 4) {
        return payload;
    }
    const Fate fate = FateOf(Get32(payload, 0), points, map);
    if (fate == Fate::Kept && id == "ltxt" && payload.size() >= 8) {
        CorrectLength(payload, 4, points, map);
    }
    return fate == Fate::Removed ? Correction() : Correction(payload);
}

Correction CorrectTexts(const std::string& payload, const CuePoints& points,
                        const WAVChunkMap& map) {
    constexpr std::size_t kHeader = 8;
    std::size_t offset = 4;
    std::string result = payload.substr(0, offset);
    while (payload.size() - offset >= kHeader) {
        const std::size_t size = Get32(payload, offset + 4);
        if (size > payload.size() - offset - kHeader) {
            break;
        }
        const std::string id = payload.substr(offset, 4);
        const Correction text =
            CorrectText(id, payload.substr(offset + kHeader, size), points, map);
        if (text) {
            result += id + LittleEndian(text->size(), 4) + *text + std::string(size % 2, '\0');
        }
        offset = std::min(offset + kHeader + size + size % 2, payload.size());
    }
    result += payload.substr(offset);
    return result.size() == 4 ? std::nullopt : Correction(result);
}

Correction CorrectBroadcast(std::string payload, const WAVChunkMap& map) {
    constexpr std::size_t kTimeReference = 338;
    constexpr std::size_t kVersion = 346;
    constexpr std::size_t kLoudness = 412;
    constexpr std::size_t kLoudnessEnd = 422;
    if (payload.size() < kVersion + 2) {
        return payload;
    }
    const std::uint64_t time = GetLittleEndian(payload, kTimeReference, 8);
    PutLittleEndian(payload, kTimeReference, 8,
                    time + static_cast<std::uint64_t>(map.Kept().front().begin));
    if (GetLittleEndian(payload, kVersion, 2) >= 2 && payload.size() >= kLoudnessEnd) {
        constexpr std::uint64_t kNotKnown = 0x7FFF;
        for (std::size_t offset = kLoudness; offset < kLoudnessEnd; offset += 2) {
            PutLittleEndian(payload, offset, 2, kNotKnown);
        }
    }
    return payload;
}

Correction CorrectFact(std::string payload, const WAVChunkMap& map) {
    if (payload.size() >= 4) {
        const auto count = static_cast<std::uint64_t>(map.ResultFrames());
        PutLittleEndian(payload, 0, 4, std::min<std::uint64_t>(count, kUnknown));
    }
    return payload;
}

} // namespace

void ReadCuePoints(const std::string& payload, CuePoints& points) {
    const Entries entries = CueEntries(payload);
    for (std::size_t i = 0; i < entries.count; ++i) {
        const std::string point = entries.At(payload, i);
        points.emplace(Get32(point, 0), Get32(point, kSampleOffsetInPoint));
    }
}

bool IsCorrected(const std::string& id, const std::string& type) {
    constexpr const char* kIds[] = {"fact", "cue ", "plst", "smpl", "bext", "PEAK", "levl", "MD5 "};
    return std::ranges::find(kIds, id) != std::end(kIds) || (id == "LIST" && type == "adtl");
}

Correction CorrectChunk(const std::string& id, const std::string& payload, const CuePoints& points,
                        const WAVChunkMap& map) {
    if (id == "fact") {
        return CorrectFact(payload, map); // may have been wrong before
    }
    if (map.IsWhole()) {
        return payload;
    }
    if (id == "cue ") {
        return CorrectCue(payload, map);
    }
    if (id == "plst") {
        return CorrectPlaylist(payload, points, map);
    }
    if (id == "smpl") {
        return CorrectSampler(payload, map);
    }
    if (id == "bext") {
        return CorrectBroadcast(payload, map);
    }
    return id == "LIST" ? CorrectTexts(payload, points, map) : std::nullopt;
}
