#pragma once

#include "audio/Decoder.h"
#include "audio/File.h"

#include <sndfile.h>

#include <memory>
#include <optional>
#include <vector>

/// Decodes WAV files with libsndfile; of those whose sizes it cannot tell it is shown the samples.
/// Compressed formats are decoded too where libsndfile knows them (ADPCM, GSM, MP3). Integers keep
/// their upper 16 bits; floating point is scaled by 32768, rounded and clipped.
class WavDecoder : public Decoder {
public:
    /// @return null when the file is no WAV that libsndfile reads
    [[nodiscard]] static std::unique_ptr<WavDecoder> Open(const std::shared_ptr<const File>& file);

    const AudioFormat& Format() const override { return m_format; }
    void Seek(std::int64_t sampleFrame) override;
    std::span<const std::int16_t> Read(std::int64_t maxSampleFrames) override;
    std::unique_ptr<Decoder> ForRandomAccess() const override;
    SeekCost CostOfSeeking() const override;
    std::optional<ReadFailure> Failure() const override {
        return m_input->file->Failures().First();
    }

private:
    struct Deleter {
        void operator()(SNDFILE* handle) const;
    };
    using Handle = std::unique_ptr<SNDFILE, Deleter>;

    /// What libsndfile reads, by way of its callbacks.
    struct Input {
        std::shared_ptr<const File> file;
        std::int64_t begin = 0; // of what libsndfile is shown
        std::int64_t bytes = 0; // that it is shown
        std::int64_t offset = 0;
        std::optional<ReadError> error; // the last one
    };
    static SF_VIRTUAL_IO Callbacks();

    WavDecoder(std::unique_ptr<Input> input, Handle handle, const AudioFormat& format, int subtype);
    std::int64_t ReadInto(std::int64_t sampleFrames);

    std::unique_ptr<Input> m_input; // of the handle
    Handle m_handle;
    AudioFormat m_format;
    int m_subtype;
    std::int64_t m_position = 0; // in sample frames
    std::vector<std::int16_t> m_samples;
    std::vector<float> m_floats;   // empty but for 32-bit floating point
    std::vector<double> m_doubles; // empty but for 64-bit floating point
};
