#include "finish/FinishedFile.h"

#include "cutting/CutError.h"

#include <algorithm>
#include <cerrno>

FinishedFile::FinishedFile(const std::string& path, const char* source)
    : m_path(path), m_file(path.c_str(), source) {
    if (m_file.GetHandle() == nullptr) {
        throw CutError{CutReason::OutputNotCreatable, errno, path};
    }
}

void FinishedFile::Write(std::span<const std::uint8_t> bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), m_file.GetHandle()) != bytes.size()) {
        throw CutError{CutReason::OutputNotWritable, errno, m_path};
    }
    m_position += static_cast<long long>(bytes.size());
}

void FinishedFile::ReserveHeader(std::size_t bytes) {
    m_headerOffset = m_position;
    Write(std::vector<std::uint8_t>(bytes));
}

void FinishedFile::WriteFrame(std::span<const std::uint8_t> frame, bool isCopied) {
    const int index = frame[2] >> 4;
    m_isUniform = m_isUniform && (m_index < 0 || m_index == index);
    m_index = index;
    if (isCopied) {
        m_isConstant = m_isConstant && (m_copiedIndex < 0 || m_copiedIndex == index);
        m_copiedIndex = index;
    }
    NoteOffset();
    m_crc.Add(frame);
    Write(frame);
    m_audioBytes += static_cast<long long>(frame.size());
    ++m_frames;
}

/// Notes few enough offsets to be kept, and enough for the table of a header.
void FinishedFile::NoteOffset() {
    constexpr std::size_t kMostOffsets = 65'536;
    if (m_frames % m_stride != 0) {
        return;
    }
    if (m_offsets.size() == kMostOffsets) {
        for (std::size_t i = 0; i < kMostOffsets / 2; ++i) {
            m_offsets[i] = m_offsets[2 * i];
        }
        m_offsets.resize(kMostOffsets / 2);
        m_stride *= 2;
        if (m_frames % m_stride != 0) {
            return;
        }
    }
    m_offsets.push_back(m_audioBytes);
}

void FinishedFile::WriteAt(long long offset, std::span<const std::uint8_t> bytes) {
    std::FILE* const file = m_file.GetHandle();
    if (fseeko(file, offset, SEEK_SET) != 0 ||
        std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size() ||
        fseeko(file, 0, SEEK_END) != 0) {
        throw CutError{CutReason::OutputNotWritable, errno, m_path};
    }
}

HeaderTruth FinishedFile::Truth() const {
    HeaderTruth truth;
    truth.frames = static_cast<std::uint32_t>(m_frames);
    truth.audioBytes = static_cast<std::uint32_t>(m_audioBytes);
    truth.musicCRC = m_crc.Value();
    truth.isConstant = m_isConstant;
    truth.isUniform = m_isUniform;
    for (std::size_t i = 0; i < HeaderTruth::kTableEntries; ++i) {
        const long long frame = static_cast<long long>(i) * m_frames /
                                static_cast<long long>(HeaderTruth::kTableEntries);
        const auto noted = static_cast<std::size_t>(frame / m_stride);
        truth.offsets[i] = noted < m_offsets.size() ? m_offsets[noted] : 0;
    }
    return truth;
}
