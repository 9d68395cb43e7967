#pragma once

#include "audio/BlockDecoder.h"
#include "audio/Decoder.h"
#include "audio/Mp3File.h"

#include <memory>
#include <vector>

/// Decodes MPEG audio on the caller's thread, one frame at a time.
class Mp3Decoder : public Decoder {
public:
    explicit Mp3Decoder(const Mp3File& mp3);

    const AudioFormat& Format() const override { return m_format; }
    void Seek(std::int64_t sampleFrame) override { m_position = sampleFrame; }
    std::span<const std::int16_t> Read(std::int64_t maxSampleFrames) override;
    std::unique_ptr<Decoder> ForRandomAccess() const override {
        return std::make_unique<Mp3Decoder>(m_mp3);
    }
    SeekCost CostOfSeeking() const override { return SeekCost::High; }
    std::vector<std::int64_t> SeekInfo() const override { return m_mp3.SeekInfo(); }
    std::optional<ReadFailure> Failure() const override { return m_mp3.file->Failures().First(); }

private:
    void DecodeUpTo(std::int64_t frame);

    Mp3File m_mp3;
    AudioFormat m_format;
    BlockDecoder m_blocks;
    std::vector<std::int16_t> m_samples; // of the frame decoded last
    std::int64_t m_frame = -1;           // its number; -1 before the first
    std::int64_t m_position = 0;         // in sample frames
};
