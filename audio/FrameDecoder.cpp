#include "audio/FrameDecoder.h"

#include "bitstream/SideInfo.h"

#include <mpg123.h>

#include <algorithm>
#include <cstring>
#include <new>

namespace {

/// Sets the handle up so that it does nothing but decode, to 16 bits at the stream's own rate.
bool Configure(mpg123_handle* handle, const FrameHeader& first) {
    constexpr long kAdded = MPG123_QUIET | MPG123_NO_READAHEAD | MPG123_IGNORE_INFOFRAME |
                            MPG123_IGNORE_STREAMLENGTH | MPG123_SKIP_ID3V2;
    constexpr long kRemoved = MPG123_GAPLESS | MPG123_AUTO_RESAMPLE;
    return mpg123_param(handle, MPG123_ADD_FLAGS, kAdded, 0) == MPG123_OK &&
           mpg123_param(handle, MPG123_REMOVE_FLAGS, kRemoved, 0) == MPG123_OK &&
           mpg123_param(handle, MPG123_RVA, MPG123_RVA_OFF, 0) == MPG123_OK &&
           mpg123_format_none(handle) == MPG123_OK &&
           mpg123_format(handle, static_cast<long>(first.rateHz),
                         first.channels == 1 ? MPG123_MONO : MPG123_STEREO,
                         MPG123_ENC_SIGNED_16) == MPG123_OK;
}

/// Whether a frame is MPEG 1 Layer II, and its joint stereo begins above the highest subband that
/// it has. libmpg123 writes a line to standard error about each of these, however quiet it is told
/// to be.
bool IsJointAboveItsBands(const std::uint8_t* frame) {
    constexpr std::uint32_t kJointStereo = 1;
    constexpr std::uint32_t kLastFewBands = 6; // bitrate index: 48 kbit/s a channel
    constexpr std::uint32_t kRate32000 = 2;
    if ((frame[1] & 0x1EU) != 0x1C || frame[3] >> 6 != kJointStereo ||
        frame[2] >> 4 > kLastFewBands) {
        return false;
    }
    // ISO/IEC 11172-3, 2.4.2.3 and tables B.2c and B.2d.
    const std::uint32_t bound = 4 * ((frame[3] >> 4 & 3U) + 1);
    const std::uint32_t subbands = (frame[2] >> 2 & 3U) == kRate32000 ? 12 : 8;
    return bound > subbands;
}

/// A frame of the same stream that holds nothing, for both channels.
std::vector<std::uint8_t> EmptyFrame(const FrameHeader& first) {
    constexpr unsigned kBitrateIndex = 9; // has room for the side information at every rate
    const std::uint8_t bytes[FrameHeader::kBytes] = {
        0xFF, static_cast<std::uint8_t>(0xE1U | first.streamBits >> 8),
        static_cast<std::uint8_t>(kBitrateIndex << 4 | (first.streamBits & 0xFFU)), 0};
    std::vector<std::uint8_t> frame(std::begin(bytes), std::end(bytes));
    frame.resize(FrameHeader::Parse(bytes).value_or(first).sizeBytes);
    return frame;
}

} // namespace

void FrameDecoder::Deleter::operator()(mpg123_handle_struct* handle) const {
    mpg123_delete(handle);
}

FrameDecoder::FrameDecoder(const FrameHeader& first)
    : m_samplesPerFrame(std::size_t{first.sampleFrames} * first.channels),
      m_empty(EmptyFrame(first)), m_dropped(m_samplesPerFrame) {
    // Does its work once; since libmpg123 1.30 it has none.
    static const int initialised = mpg123_init();
    if (initialised == MPG123_OK) {
        m_handle.reset(mpg123_new(nullptr, nullptr));
    }
    if (!m_handle || !Configure(m_handle.get(), first)) {
        throw std::bad_alloc();
    }
    m_muted.reserve(FrameHeader::kMaxBytes);
    Clear();
}

void FrameDecoder::Clear() {
    m_reservoirBytes = 0;
    mpg123_open_feed(m_handle.get());
    // A damaged frame may leave a part of libmpg123's working memory unwritten and decode to what
    // an earlier frame left there, or nobody. Opening clears all but that; a frame of nothing does.
    TryDecode(m_empty.data(), m_empty.size(), m_dropped.data());
    mpg123_open_feed(m_handle.get());
}

bool FrameDecoder::Decode(const std::uint8_t* frame, std::size_t bytes, std::int16_t* samples) {
    if (frame != nullptr && TryDecode(frame, bytes, samples)) {
        return true;
    }
    const bool isShortOfMemory =
        frame != nullptr && mpg123_errcode(m_handle.get()) == MPG123_OUT_OF_MEM;
    std::fill_n(samples, m_samplesPerFrame, std::int16_t{0});
    // What libmpg123 may have kept of this frame must not be taken for a part of the next one.
    Clear();
    return !isShortOfMemory;
}

bool FrameDecoder::FillReservoir(const std::uint8_t* frame, const FrameHeader& header) {
    if (frame == nullptr || header.MainDataBytes() == 0) {
        return Decode(frame, header.sizeBytes, m_dropped.data());
    }
    // Side information of all zeros says that the granules hold nothing. Only where the main data
    // begin must be told, as far back as there are any: libmpg123 then takes them over.
    m_muted.assign(frame, frame + header.sizeBytes);
    std::uint8_t* const sideInfo = m_muted.data() + header.SideInfoOffset();
    std::fill_n(sideInfo, header.sideInfoBytes, std::uint8_t{0});
    const std::uint32_t begin = std::min(m_reservoirBytes, header.MaxReservoirBytes());
    bitstream::SideInfo::WriteMainDataBegin(sideInfo, header.lowSamplingRate, begin);
    const bool isDecoded = Decode(m_muted.data(), m_muted.size(), m_dropped.data());
    m_reservoirBytes += header.MainDataBytes();
    return isDecoded;
}

bool FrameDecoder::TryDecode(const std::uint8_t* frame, std::size_t bytes, std::int16_t* samples) {
    if (IsJointAboveItsBands(frame)) {
        m_muted.assign(frame, frame + bytes);
        m_muted[3] &= 0x0F; // plain stereo, which is the same
        frame = m_muted.data();
    }
    if (mpg123_feed(m_handle.get(), frame, bytes) != MPG123_OK) {
        return false;
    }
    off_t number = 0;
    unsigned char* audio = nullptr;
    std::size_t audioBytes = 0;
    int result = MPG123_NEW_FORMAT;
    // The format is reported once before the first frame is decoded, and where it changes.
    for (int attempt = 0; attempt < 3 && result == MPG123_NEW_FORMAT; ++attempt) {
        result = mpg123_decode_frame(m_handle.get(), &number, &audio, &audioBytes);
    }
    if (result != MPG123_OK || audioBytes != m_samplesPerFrame * sizeof(std::int16_t)) {
        return false;
    }
    std::memcpy(samples, audio, audioBytes);
    return true;
}
