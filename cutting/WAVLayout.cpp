#include "cutting/WAVLayout.h"

#include <array>
#include <cstring>
#include <sys/stat.h>

namespace {

constexpr std::uint16_t kPCM = 1;
constexpr long long kFormatFieldsSize = 16;

// No file has more than a handful before its samples; a list of millions of empty chunks would take
// many times the file's size in memory.
constexpr std::size_t kMostChunks = 10000;

unsigned int LittleEndian(const unsigned char* bytes, int size) {
    unsigned int value = 0;
    for (int i = size; i > 0; --i) {
        value = value << 8 | bytes[i - 1];
    }
    return value;
}

long long FileSize(std::FILE* file) {
    struct stat status {};
    return fstat(fileno(file), &status) == 0 ? status.st_size : 0;
}

/// Reads the layout from front to back. Each step tells what is wrong, or nothing.
class LayoutReader {
public:
    LayoutReader(std::FILE* file, WAVLayout& layout) : m_file(file), m_layout(layout) {
        m_layout.fileSize = FileSize(file);
    }

    CutReason ReadAll() {
        CutReason error = ReadRIFFHeader();
        if (error == CutReason::None) {
            error = ReadFormat();
        }
        while (error == CutReason::None && m_layout.chunks.back().id != "data") {
            error = m_layout.chunks.size() < kMostChunks ? SkipPayloadAndReadChunk()
                                                         : CutReason::TooManyChunks;
        }
        if (error == CutReason::None && m_layout.DataSize() == 0) {
            error = CutReason::NoSamples;
        }
        return error;
    }

private:
    CutReason ReadRIFFHeader() {
        std::array<unsigned char, WAVLayout::kRIFFHeaderSize> bytes{};
        if (!Read(0, bytes.data(), bytes.size()) || std::memcmp(bytes.data(), "RIFF", 4) != 0 ||
            std::memcmp(bytes.data() + 8, "WAVE", 4) != 0) {
            return CutReason::NotWAV;
        }
        return CutReason::None;
    }

    CutReason ReadFormat() {
        if (!ReadChunk(WAVLayout::kRIFFHeaderSize) || m_layout.chunks.back().id != "fmt ") {
            return CutReason::FormatNotFirst;
        }
        std::array<unsigned char, kFormatFieldsSize> bytes{};
        const WAVChunk& chunk = m_layout.chunks.back();
        if (chunk.size < bytes.size() || IsNegative(chunk.size) ||
            !Read(chunk.offset + WAVLayout::kChunkHeaderSize, bytes.data(), bytes.size())) {
            return CutReason::DamagedWAV;
        }
        m_layout.formatTag = static_cast<std::uint16_t>(LittleEndian(&bytes[0], 2));
        m_layout.channels = static_cast<std::uint16_t>(LittleEndian(&bytes[2], 2));
        m_layout.samplesPerSecond = LittleEndian(&bytes[4], 4);
        m_layout.bytesPerSecond = static_cast<std::int32_t>(LittleEndian(&bytes[8], 4));
        m_layout.blockAlign = static_cast<std::int16_t>(LittleEndian(&bytes[12], 2));
        m_layout.bitsPerSample = static_cast<std::uint16_t>(LittleEndian(&bytes[14], 2));
        if (m_layout.formatTag != kPCM) {
            return CutReason::NotPCM;
        }
        if (m_layout.bytesPerSecond <= 0 || m_layout.blockAlign <= 0) {
            return CutReason::DamagedWAV;
        }
        return CutReason::None;
    }

    CutReason SkipPayloadAndReadChunk() {
        const WAVChunk& chunk = m_layout.chunks.back();
        const long long payload = chunk.offset + WAVLayout::kChunkHeaderSize;
        if (chunk.size > m_layout.fileSize - payload) {
            return CutReason::NoData;
        }
        long long next = payload + chunk.size;
        unsigned char pad = 1;
        if (chunk.size % 2 == 1 && Read(next, &pad, 1) && pad == 0) {
            ++next;
        }
        return ReadChunk(next) ? CutReason::None : CutReason::NoData;
    }

    bool ReadChunk(long long offset) {
        std::array<unsigned char, WAVLayout::kChunkHeaderSize> bytes{};
        if (!Read(offset, bytes.data(), bytes.size())) {
            return false;
        }
        m_layout.chunks.push_back({std::string(reinterpret_cast<const char*>(bytes.data()), 4),
                                   offset, LittleEndian(&bytes[4], 4)});
        return true;
    }

    bool Read(long long offset, unsigned char* destination, std::size_t size) {
        return fseeko(m_file, offset, SEEK_SET) == 0 &&
               std::fread(destination, 1, size, m_file) == size;
    }

    static bool IsNegative(std::uint32_t size) { return static_cast<std::int32_t>(size) < 0; }

    std::FILE* m_file;
    WAVLayout& m_layout;
};

} // namespace

CutReason ReadWAVLayout(std::FILE* file, WAVLayout& layout) {
    layout = WAVLayout();
    const CutReason reason = LayoutReader(file, layout).ReadAll();
    return std::ferror(file) != 0 ? CutReason::SourceUnreadable : reason;
}
