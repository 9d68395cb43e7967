#include "audio/WavDecoder.h"

#include "audio/WavSamples.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr std::int64_t kBufferSampleFrames = 4096;
constexpr int kMaxRateHz = 1'000'000; // nothing records faster; a damaged header may say so

/// From 32 or 64 bits; the product is exact, and so rounded only once.
template <typename Float>
std::int16_t FromFloat(Float sample) {
    const Float scaled = sample * Float{32768};
    if (!(scaled > Float{-32768})) {
        return std::isnan(scaled) ? std::int16_t{0} : std::int16_t{-32768};
    }
    return static_cast<std::int16_t>(std::lrint(std::min(scaled, Float{32767})));
}

bool IsWav(int format) {
    const int type = format & SF_FORMAT_TYPEMASK;
    return type == SF_FORMAT_WAV || type == SF_FORMAT_WAVEX || type == SF_FORMAT_RAW;
}

/// libsndfile's name of bare samples of this kind.
/// @return 0, which it refuses, when it has none
int RawFormat(const WavSamples& samples) {
    constexpr struct {
        std::uint16_t formatTag;
        std::uint32_t sampleBytes;
        int subtype;
    } kFormats[] = {
        {1, 1, SF_FORMAT_PCM_U8}, {1, 2, SF_FORMAT_PCM_16}, {1, 3, SF_FORMAT_PCM_24},
        {1, 4, SF_FORMAT_PCM_32}, {3, 4, SF_FORMAT_FLOAT},  {3, 8, SF_FORMAT_DOUBLE},
        {6, 1, SF_FORMAT_ALAW},   {7, 1, SF_FORMAT_ULAW},
    };
    for (const auto& [formatTag, sampleBytes, subtype] : kFormats) {
        if (formatTag == samples.formatTag && sampleBytes == samples.sampleBytes) {
            return SF_FORMAT_RAW | SF_ENDIAN_LITTLE | subtype;
        }
    }
    return 0;
}

} // namespace

void WavDecoder::Deleter::operator()(SNDFILE* handle) const {
    sf_close(handle);
}

SF_VIRTUAL_IO WavDecoder::Callbacks() {
    SF_VIRTUAL_IO callbacks{};
    callbacks.get_filelen = [](void* user) -> sf_count_t {
        return static_cast<Input*>(user)->bytes;
    };
    callbacks.seek = [](sf_count_t offset, int whence, void* user) -> sf_count_t {
        auto& input = *static_cast<Input*>(user);
        const std::int64_t origin = whence == SEEK_SET   ? 0
                                    : whence == SEEK_CUR ? input.offset
                                                         : input.bytes;
        return offset < -origin ? -1 : input.offset = origin + offset;
    };
    callbacks.read = [](void* to, sf_count_t count, void* user) -> sf_count_t {
        auto& input = *static_cast<Input*>(user);
        const std::int64_t left = input.bytes - input.offset;
        const std::int64_t wanted = std::clamp(left, std::int64_t{0}, count);
        const auto read =
            input.file->ReadAt(input.begin + input.offset, to, static_cast<std::size_t>(wanted));
        const auto bytes = static_cast<std::int64_t>(read.bytes);
        input.offset += bytes;
        if (bytes < wanted) {
            input.error = ReadError{input.begin + input.offset, read.error};
        }
        return bytes;
    };
    callbacks.tell = [](void* user) -> sf_count_t { return static_cast<Input*>(user)->offset; };
    return callbacks;
}

std::unique_ptr<WavDecoder> WavDecoder::Open(const std::shared_ptr<const File>& file) {
    SF_INFO info{};
    SF_VIRTUAL_IO callbacks = Callbacks();
    auto input = std::make_unique<Input>(Input{file, 0, file->State().sizeBytes, 0, {}});
    if (const auto samples = FindWavSamples(*file)) {
        info.format = RawFormat(*samples);
        info.channels = samples->channels;
        info.samplerate = static_cast<int>(std::min(samples->rateHz, kMaxRateHz + 1U));
        input->begin = samples->offsetBytes;
        input->bytes = samples->sampleFrames * samples->channels * samples->sampleBytes;
    }
    Handle handle(sf_open_virtual(&callbacks, SFM_READ, &info, input.get()));
    if (!handle && input->error) {
        input->file->Failures().Report({0, *input->error});
    }
    if (!handle || !IsWav(info.format) || info.channels < 1 || info.samplerate < 1 ||
        info.samplerate > kMaxRateHz || info.frames < 0) {
        return nullptr;
    }
    const AudioFormat format{static_cast<std::uint32_t>(info.samplerate),
                             static_cast<std::uint32_t>(info.channels), info.frames};
    return std::unique_ptr<WavDecoder>(new WavDecoder(std::move(input), std::move(handle), format,
                                                      info.format & SF_FORMAT_SUBMASK));
}

WavDecoder::WavDecoder(std::unique_ptr<Input> input, Handle handle, const AudioFormat& format,
                       int subtype)
    : m_input(std::move(input)), m_handle(std::move(handle)), m_format(format), m_subtype(subtype),
      m_samples(static_cast<std::size_t>(kBufferSampleFrames * format.channels)),
      m_floats(subtype == SF_FORMAT_FLOAT ? m_samples.size() : 0),
      m_doubles(subtype == SF_FORMAT_DOUBLE ? m_samples.size() : 0) {
}

std::unique_ptr<Decoder> WavDecoder::ForRandomAccess() const {
    auto another = Open(m_input->file);
    // The header was read before; it may be unreadable by now.
    return another ? std::move(another) : throw std::bad_alloc();
}

SeekCost WavDecoder::CostOfSeeking() const {
    switch (m_subtype) {
    case SF_FORMAT_PCM_U8:
    case SF_FORMAT_PCM_16:
    case SF_FORMAT_PCM_24:
    case SF_FORMAT_PCM_32:
    case SF_FORMAT_FLOAT:
    case SF_FORMAT_DOUBLE:
    case SF_FORMAT_ULAW:
    case SF_FORMAT_ALAW:
        return SeekCost::Low;
    default:
        return SeekCost::Unknown;
    }
}

void WavDecoder::Seek(std::int64_t sampleFrame) {
    m_position = sampleFrame;
    sf_seek(m_handle.get(), sampleFrame, SEEK_SET);
}

std::span<const std::int16_t> WavDecoder::Read(std::int64_t maxSampleFrames) {
    const std::int64_t count =
        std::min({maxSampleFrames, kBufferSampleFrames, m_format.sampleFrames - m_position});
    m_input->error.reset();
    const std::int64_t read = std::clamp(ReadInto(count), std::int64_t{0}, count);
    if (m_input->error) {
        m_input->file->Failures().Report({m_position + read, *m_input->error});
    }
    // What the file no longer holds is silent; the length stays what it was, and what comes behind
    // stays in its place.
    std::fill(m_samples.begin() + read * m_format.channels,
              m_samples.begin() + count * m_format.channels, std::int16_t{0});
    m_position += count;
    if (read < count) {
        sf_seek(m_handle.get(), m_position, SEEK_SET);
    }
    return std::span(m_samples).first(static_cast<std::size_t>(count * m_format.channels));
}

std::int64_t WavDecoder::ReadInto(std::int64_t sampleFrames) {
    const auto convert = [this](const auto& from, std::int64_t read) {
        const std::int64_t count = std::max(read, std::int64_t{0}) * m_format.channels;
        std::transform(from.begin(), from.begin() + count, m_samples.begin(),
                       [](auto sample) { return FromFloat(sample); });
        return read;
    };
    if (!m_doubles.empty()) {
        return convert(m_doubles, sf_readf_double(m_handle.get(), m_doubles.data(), sampleFrames));
    }
    if (!m_floats.empty()) {
        return convert(m_floats, sf_readf_float(m_handle.get(), m_floats.data(), sampleFrames));
    }
    return sf_readf_short(m_handle.get(), m_samples.data(), sampleFrames);
}
