#include "audio/WavSamples.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::int64_t kFirstChunk = 12;
constexpr std::int64_t kHeaderBytes = 8;
constexpr int kMostChunks = 10000; // before the samples
constexpr std::uint32_t kIn64Bits = 0xFFFFFFFF;
constexpr std::uint16_t kExtensible = 0xFFFE;

std::uint64_t LittleEndian(const std::uint8_t* bytes, int size) {
    std::uint64_t value = 0;
    for (int i = size; i > 0; --i) {
        value = value << 8 | bytes[i - 1];
    }
    return value;
}

struct Chunk {
    char id[4];
    std::int64_t payload; // offset
    std::uint32_t size;   // declared

    bool Is(const char* name) const { return std::memcmp(id, name, sizeof id) == 0; }
};

class Reader {
public:
    explicit Reader(const File& file) : m_file(file), m_fileBytes(file.State().sizeBytes) {}

    std::optional<WavSamples> Find() {
        std::uint8_t form[kFirstChunk];
        if (!Read(0, form) || std::memcmp(form + 8, "WAVE", 4) != 0) {
            return std::nullopt;
        }
        const bool isLarge = std::memcmp(form, "RF64", 4) == 0 || std::memcmp(form, "BW64", 4) == 0;
        std::int64_t offset = kFirstChunk;
        for (int i = 0; i < kMostChunks; ++i) {
            const auto chunk = ChunkAt(offset);
            if (!chunk) {
                return std::nullopt;
            }
            if (chunk->Is("data")) {
                const bool isOrdinary = !isLarge && chunk->size != 0 && chunk->size != kIn64Bits;
                return isOrdinary || !m_isFixedSize ? std::nullopt : Measure(*chunk);
            }
            if (chunk->Is("fmt ") && !m_isFixedSize) {
                ReadFormat(*chunk);
            } else if (chunk->Is("ds64") && isLarge) {
                std::uint8_t sizes[16];
                m_dataBytes = Read(chunk->payload, sizes) ? LittleEndian(sizes + 8, 8) : 0;
            }
            offset = EndOf(*chunk);
        }
        return std::nullopt;
    }

private:
    std::optional<WavSamples> Measure(const Chunk& data) {
        const std::int64_t rest = m_fileBytes - data.payload;
        const std::uint64_t declared =
            data.size == kIn64Bits && m_dataBytes != 0 ? m_dataBytes : data.size;
        const bool isUnknown =
            declared == 0 ? !IsChainOfChunks(data.payload)
                          : declared == kIn64Bits || declared > static_cast<std::uint64_t>(rest);
        const std::int64_t bytes = isUnknown ? rest : static_cast<std::int64_t>(declared);
        m_samples.offsetBytes = data.payload;
        m_samples.sampleFrames = bytes / (m_samples.sampleBytes * m_samples.channels);
        return m_samples;
    }

    void ReadFormat(const Chunk& chunk) {
        // What follows the tag in the identifiers of the sub-formats.
        constexpr std::uint8_t kSubFormat[] = {0, 0, 0,    0, 0x10, 0,    0x80,
                                               0, 0, 0xAA, 0, 0x38, 0x9B, 0x71};
        std::uint8_t bytes[40] = {};
        const bool isExtended = chunk.size >= sizeof bytes && Read(chunk.payload, bytes);
        std::uint8_t fields[16];
        if (chunk.size < sizeof fields || !Read(chunk.payload, fields)) {
            return;
        }
        m_samples.formatTag = static_cast<std::uint16_t>(LittleEndian(fields, 2));
        if (m_samples.formatTag == kExtensible && isExtended &&
            std::memcmp(bytes + 26, kSubFormat, sizeof kSubFormat) == 0) {
            m_samples.formatTag = static_cast<std::uint16_t>(LittleEndian(bytes + 24, 2));
        }
        m_samples.channels = static_cast<std::uint16_t>(LittleEndian(fields + 2, 2));
        m_samples.rateHz = static_cast<std::uint32_t>(LittleEndian(fields + 4, 4));
        const auto blockAlign = static_cast<std::uint32_t>(LittleEndian(fields + 12, 2));
        m_isFixedSize = m_samples.channels > 0 && blockAlign >= m_samples.channels &&
                        blockAlign % m_samples.channels == 0;
        m_samples.sampleBytes = m_isFixedSize ? blockAlign / m_samples.channels : 0;
    }

    // Whether the file goes on with chunks to its very end, as one without samples may. Samples
    // would have to be very much like them.
    bool IsChainOfChunks(std::int64_t offset) const {
        for (int i = 0; i < kMostChunks && offset < m_fileBytes; ++i) {
            const auto chunk = ChunkAt(offset);
            if (!chunk || chunk->size > m_fileBytes - chunk->payload ||
                !std::all_of(chunk->id, chunk->id + 4,
                             [](char c) { return c >= ' ' && c <= '~'; })) {
                return false;
            }
            offset = EndOf(*chunk);
        }
        return offset == m_fileBytes;
    }

    std::optional<Chunk> ChunkAt(std::int64_t offset) const {
        std::uint8_t bytes[kHeaderBytes];
        if (!Read(offset, bytes)) {
            return std::nullopt;
        }
        Chunk chunk{
            {}, offset + kHeaderBytes, static_cast<std::uint32_t>(LittleEndian(bytes + 4, 4))};
        std::memcpy(chunk.id, bytes, sizeof chunk.id);
        return chunk;
    }

    // There are writers that leave the pad byte out.
    std::int64_t EndOf(const Chunk& chunk) const {
        const std::int64_t end = chunk.payload + chunk.size;
        std::uint8_t pad[1];
        return chunk.size % 2 == 1 && Read(end, pad) && pad[0] == 0 ? end + 1 : end;
    }

    template <std::size_t kSize>
    bool Read(std::int64_t offset, std::uint8_t (&to)[kSize]) const {
        return offset <= m_fileBytes && m_file.ReadAt(offset, to, kSize).bytes == kSize;
    }

    const File& m_file;
    const std::int64_t m_fileBytes;
    WavSamples m_samples;
    bool m_isFixedSize = false;    // the format is known
    std::uint64_t m_dataBytes = 0; // in 64 bits; 0: not told
};

} // namespace

std::optional<WavSamples> FindWavSamples(const File& file) {
    return Reader(file).Find();
}
