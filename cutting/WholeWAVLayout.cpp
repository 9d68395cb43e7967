#include "cutting/WholeWAVLayout.h"

#include "cutting/LittleEndian.h"

#include <algorithm>
#include <map>
#include <sys/stat.h>

namespace {

using Chunk = WholeWAVLayout::Chunk;

constexpr long long kFirstChunk = 12;      // behind the identifiers and the size of the file
constexpr std::size_t kMostChunks = 10000; // as before the samples of a plain file
constexpr std::uint32_t kIn64Bits = 0xFFFFFFFF;
constexpr std::size_t kTableBegin = 28; // of the sizes of other chunks, in ds64
constexpr std::size_t kTableEntry = 12;

constexpr std::uint16_t kPCM = 1;
constexpr std::uint16_t kFloat = 3;
constexpr std::uint16_t kALaw = 6;
constexpr std::uint16_t kMuLaw = 7;
constexpr std::uint16_t kExtensible = 0xFFFE;

// What follows the tag in the identifiers of the sub-formats (of ksmedia, and of Ambisonics).
constexpr char kSubFormat[] = "\x00\x00\x00\x00\x10\x00\x80\x00\x00\xAA\x00\x38\x9B\x71";
constexpr char kAmbisonic[] = "\x00\x00\x21\x07\xD3\x11\x86\x44\xC8\xC1\xCA\x00\x00\x00";
constexpr std::size_t kSubFormatBytes = sizeof kSubFormat - 1;

/// Reads the layout from front to back. Each step tells what is wrong, or nothing.
class Reader {
public:
    Reader(std::FILE* file, WholeWAVLayout& layout) : m_file(file), m_layout(layout) {
        struct stat status {};
        m_layout.fileSize = fstat(fileno(file), &status) == 0 ? status.st_size : 0;
    }

    CutReason ReadAll() {
        const std::string begin = Read(0, kFirstChunk);
        m_layout.form = begin.substr(0, 4);
        const bool isLarge = m_layout.form == "RF64" || m_layout.form == "BW64";
        if (begin.size() != kFirstChunk || (m_layout.form != "RIFF" && !isLarge) ||
            begin.substr(8) != "WAVE") {
            return CutReason::NotWAV;
        }
        CutReason reason = ReadUpToSamples(isLarge);
        if (reason == CutReason::None) {
            reason = ReadBehindSamples();
        }
        return reason == CutReason::None && m_layout.SampleFrames() == 0 ? CutReason::NoSamples
                                                                         : reason;
    }

private:
    CutReason ReadUpToSamples(bool isLarge) {
        bool hasFormat = false;
        for (long long offset = kFirstChunk;; offset = EndOf(m_layout.chunks.back())) {
            Chunk chunk;
            if (m_layout.chunks.size() >= kMostChunks) {
                return CutReason::TooManyChunks;
            }
            if (!ReadChunk(offset, chunk)) {
                return CutReason::NoData;
            }
            if (chunk.id == "data") {
                ChooseDataSize(chunk);
                m_layout.dataIndex = m_layout.chunks.size();
                m_layout.chunks.push_back(chunk);
                return hasFormat ? CutReason::None : CutReason::FormatNotFirst;
            }
            if (chunk.size > m_layout.fileSize - chunk.Payload()) {
                return CutReason::NoData;
            }
            m_layout.chunks.push_back(chunk);
            if (chunk.id == "ds64" && isLarge && m_dataSize == 0) {
                ReadSizes(chunk);
            } else if (chunk.id == "fmt " && !hasFormat) {
                hasFormat = true;
                const CutReason reason = ReadFormat(chunk);
                if (reason != CutReason::None) {
                    return reason;
                }
            }
        }
    }

    // What is no whole chunk stays what it is.
    CutReason ReadBehindSamples() {
        m_layout.chunksEnd = EndOf(m_layout.Data());
        Chunk chunk;
        while (ReadChunk(m_layout.chunksEnd, chunk) &&
               chunk.size <= m_layout.fileSize - chunk.Payload()) {
            if (m_layout.chunks.size() >= kMostChunks) {
                return CutReason::TooManyChunks;
            }
            m_layout.chunks.push_back(chunk);
            m_layout.chunksEnd = EndOf(chunk);
        }
        return CutReason::None;
    }

    CutReason ReadFormat(const Chunk& chunk) {
        constexpr long long kLargest = 40; // of what is read of it
        const std::string bytes = Read(chunk.Payload(), std::min(chunk.size, kLargest));
        if (bytes.size() < 16) {
            return CutReason::DamagedWAV;
        }
        m_layout.formatTag = static_cast<std::uint16_t>(GetLittleEndian(bytes, 0, 2));
        m_layout.channels = static_cast<std::uint16_t>(GetLittleEndian(bytes, 2, 2));
        m_layout.samplesPerSecond = static_cast<std::uint32_t>(GetLittleEndian(bytes, 4, 4));
        m_layout.bytesPerSecond = static_cast<std::uint32_t>(GetLittleEndian(bytes, 8, 4));
        m_layout.blockAlign = static_cast<std::uint16_t>(GetLittleEndian(bytes, 12, 2));
        m_layout.bitsPerSample = static_cast<std::uint16_t>(GetLittleEndian(bytes, 14, 2));
        m_layout.isExtensible = m_layout.formatTag == kExtensible;
        if (m_layout.isExtensible && bytes.size() == kLargest) {
            const std::string name = bytes.substr(26);
            if (name == std::string(kSubFormat, kSubFormatBytes) ||
                name == std::string(kAmbisonic, kSubFormatBytes)) {
                m_layout.formatTag = static_cast<std::uint16_t>(GetLittleEndian(bytes, 24, 2));
            }
        }
        constexpr std::uint16_t kFixedSize[] = {kPCM, kFloat, kALaw, kMuLaw};
        if (std::ranges::find(kFixedSize, m_layout.formatTag) == std::end(kFixedSize)) {
            return CutReason::CompressedWAV;
        }
        constexpr unsigned int kLargestSample = 8;
        const bool isSound = m_layout.channels > 0 && m_layout.samplesPerSecond > 0 &&
                             m_layout.blockAlign > 0 &&
                             m_layout.blockAlign % m_layout.channels == 0 &&
                             m_layout.blockAlign / m_layout.channels <= kLargestSample;
        return isSound ? CutReason::None : CutReason::DamagedWAV;
    }

    void ReadSizes(const Chunk& chunk) {
        constexpr long long kMost{kTableBegin + kMostChunks * kTableEntry};
        const std::string bytes = Read(chunk.Payload(), std::min(chunk.size, kMost));
        if (bytes.size() >= 16) {
            m_dataSize = GetLittleEndian(bytes, 8, 8);
        }
        for (std::size_t entry = kTableBegin; entry + kTableEntry <= bytes.size();
             entry += kTableEntry) {
            m_sizes.emplace(bytes.substr(entry, 4), GetLittleEndian(bytes, entry + 4, 8));
        }
    }

    void ChooseDataSize(Chunk& data) const {
        const long long rest = m_layout.fileSize - data.Payload();
        const bool isElsewhere = data.size == kIn64Bits;
        const std::uint64_t declared =
            isElsewhere ? m_dataSize : static_cast<std::uint64_t>(data.size);
        const bool isUnknown = declared == 0 ? isElsewhere || !IsChainOfChunks(data.Payload())
                                             : declared > static_cast<std::uint64_t>(rest);
        data.size = isUnknown ? rest : static_cast<long long>(declared);
    }

    // Whether the file goes on with chunks to its very end, as one without samples may. Samples
    // would have to be very much like them.
    bool IsChainOfChunks(long long offset) const {
        Chunk chunk;
        for (std::size_t i = 0; i < kMostChunks && offset < m_layout.fileSize; ++i) {
            if (!ReadChunk(offset, chunk) ||
                !std::ranges::all_of(chunk.id, [](char c) { return c >= ' ' && c <= '~'; }) ||
                chunk.size > m_layout.fileSize - chunk.Payload()) {
                return false;
            }
            offset = EndOf(chunk);
        }
        return offset == m_layout.fileSize;
    }

    bool ReadChunk(long long offset, Chunk& chunk) const {
        const std::string bytes = Read(offset, Chunk::kHeaderSize);
        if (bytes.size() != Chunk::kHeaderSize) {
            return false;
        }
        chunk.id = bytes.substr(0, 4);
        chunk.offset = offset;
        chunk.size = static_cast<long long>(GetLittleEndian(bytes, 4, 4));
        const auto size = m_sizes.find(chunk.id);
        if (chunk.size == kIn64Bits && size != m_sizes.end()) {
            // More than a file can hold is as good as all of it.
            chunk.size = static_cast<long long>(
                std::min(size->second, static_cast<std::uint64_t>(m_layout.fileSize)));
        }
        return true;
    }

    long long EndOf(const Chunk& chunk) const {
        const long long end = chunk.Payload() + chunk.size;
        return chunk.size % 2 == 1 && Read(end, 1) == std::string(1, '\0') ? end + 1 : end;
    }

    std::string Read(long long offset, long long size) const {
        std::string bytes(static_cast<std::size_t>(size), '\0');
        const bool isThere = fseeko(m_file, offset, SEEK_SET) == 0;
        bytes.resize(isThere ? std::fread(bytes.data(), 1, bytes.size(), m_file) : 0);
        return bytes;
    }

    std::FILE* m_file;
    WholeWAVLayout& m_layout;
    std::uint64_t m_dataSize = 0; // in 64 bits; 0: not told
    std::map<std::string, std::uint64_t> m_sizes;
};

} // namespace

CutReason ReadWholeWAVLayout(std::FILE* file, WholeWAVLayout& layout) {
    layout = WholeWAVLayout();
    const CutReason reason = Reader(file, layout).ReadAll();
    return std::ferror(file) != 0 ? CutReason::SourceUnreadable : reason;
}
