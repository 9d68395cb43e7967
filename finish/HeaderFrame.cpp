#include "finish/HeaderFrame.h"

#include "bitstream/CRC.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace {

// Offsets from the identifier; the LAME tag's fields stand behind those of the Xing header.
constexpr std::size_t kFlags = 4;
constexpr std::size_t kFrames = 8;
constexpr std::size_t kBytes = 12;
constexpr std::size_t kTable = 16;
constexpr std::size_t kTag = 120;
constexpr std::size_t kMethod = kTag + 9;
constexpr std::size_t kGap = kTag + 21;
constexpr std::size_t kMusicLength = kTag + 28;
constexpr std::size_t kMusicCRC = kTag + 32;
constexpr std::size_t kTagCRC = kTag + 34;
constexpr std::size_t kAll = kTag + 36;

constexpr std::uint8_t kAllFields = 15;
using bitstream::kCRCBytes;
using bitstream::kHeaderBytes;

// Names the layout of the tag; players that know it trim, others do not.
constexpr std::string_view kEncoder = "LAME3.90.";
constexpr std::string_view kTrimmed[] = {"LAME", "Lavf", "Lavc", "GOGO"};

bool Holds(std::span<const std::uint8_t> bytes, std::size_t offset, std::string_view text) {
    return bytes.size() >= offset + text.size() &&
           std::memcmp(bytes.data() + offset, text.data(), text.size()) == 0;
}

bool IsTagged(std::span<const std::uint8_t> bytes, std::size_t identifier) {
    return std::ranges::any_of(
        kTrimmed, [&](std::string_view text) { return Holds(bytes, identifier + kTag, text); });
}

/// Where the identifier of a header with all four fields and room for a tag begins.
std::optional<std::size_t> FullHeader(std::span<const std::uint8_t> frame) {
    bitstream::FrameFacts facts;
    if (frame.size() < kHeaderBytes ||
        bitstream::DecodeHeader(frame.data(), facts) != bitstream::HeaderState::Sound) {
        return std::nullopt;
    }
    const std::size_t identifier = kHeaderBytes + facts.SideInfoBytes();
    const bool isHeader = Holds(frame, identifier, "Xing") || Holds(frame, identifier, "Info");
    if (!isHeader || frame.size() < identifier + kAll ||
        (frame[identifier + kFlags + 3] & kAllFields) != kAllFields) {
        return std::nullopt;
    }
    return identifier;
}

} // namespace

std::optional<EncoderGap> HeaderFrame::GapOf(std::span<const std::uint8_t> source) {
    const auto identifier = FullHeader(source);
    if (!identifier || !IsTagged(source, *identifier)) {
        return std::nullopt;
    }
    const std::uint8_t* const gap = source.data() + *identifier + kGap;
    return EncoderGap{static_cast<unsigned int>(gap[0] << 4 | gap[1] >> 4),
                      static_cast<unsigned int>((gap[1] & 0x0F) << 8 | gap[2])};
}

HeaderFrame::HeaderFrame(std::span<const std::uint8_t> source,
                         std::span<const std::uint8_t> firstFrame,
                         const bitstream::FrameFacts& facts)
    : m_gap(GapOf(source)), m_firstBitrateIndex(facts.bitrateIndex) {
    const auto identifier = FullHeader(source);
    if (!identifier) {
        MakeNew(firstFrame, facts);
        return;
    }
    m_bytes.assign(source.begin(), source.end());
    m_identifier = *identifier;
    m_bitrateIndex = m_bytes[2] >> 4;
    if (!IsTagged(m_bytes, m_identifier)) {
        std::fill_n(m_bytes.begin() + static_cast<std::ptrdiff_t>(m_identifier + kTag), kAll - kTag,
                    std::uint8_t{0});
        std::ranges::copy(kEncoder,
                          m_bytes.begin() + static_cast<std::ptrdiff_t>(m_identifier + kTag));
    }
}

void HeaderFrame::MakeNew(std::span<const std::uint8_t> firstFrame,
                          const bitstream::FrameFacts& facts) {
    constexpr std::uint8_t kNoCRC = 1;
    constexpr unsigned int kKeptBits = 0x0D; // rate and private bit: it is not padded
    constexpr std::uint8_t kRevisionAndMethod = 1;
    m_identifier = kHeaderBytes + facts.SideInfoBytes();
    std::size_t size = 0;
    const auto& bitrates = bitstream::kBitratesKbps[facts.isLSF][facts.layer];
    for (m_bitrateIndex = facts.bitrateIndex; m_bitrateIndex < std::size(bitrates);
         ++m_bitrateIndex) {
        size = bitstream::FrameBytes(facts.isLSF, facts.layer, bitrates[m_bitrateIndex] * 1000,
                                     facts.samplingRateHz, 0);
        if (size >= m_identifier + kAll) {
            break;
        }
    }
    m_bytes.assign(size, 0);
    std::copy_n(firstFrame.begin(), kHeaderBytes, m_bytes.begin());
    m_bytes[1] |= kNoCRC;
    m_bytes[2] = static_cast<std::uint8_t>(m_bitrateIndex << 4 | (m_bytes[2] & kKeptBits));
    m_bytes[m_identifier + kFlags + 3] = kAllFields;
    std::ranges::copy(kEncoder, m_bytes.begin() + static_cast<std::ptrdiff_t>(m_identifier + kTag));
    m_bytes[m_identifier + kMethod] = kRevisionAndMethod;
}

void HeaderFrame::Put(std::size_t offset, std::uint32_t value, std::size_t bytes) {
    for (std::size_t i = 0; i < bytes; ++i) {
        m_bytes[m_identifier + offset + i] =
            static_cast<std::uint8_t>(value >> (8 * (bytes - 1 - i)));
    }
}

const std::vector<std::uint8_t>& HeaderFrame::Fill(const HeaderTruth& truth) {
    const auto bytes = static_cast<std::uint32_t>(m_bytes.size() + truth.audioBytes);
    std::ranges::copy(std::string_view(truth.isConstant ? "Info" : "Xing"),
                      m_bytes.begin() + static_cast<std::ptrdiff_t>(m_identifier));
    Put(kFrames, truth.frames, 4);
    Put(kBytes, bytes, 4);
    for (std::size_t i = 0; i < HeaderTruth::kTableEntries; ++i) {
        const long long offset =
            i == 0 ? 0 : truth.offsets[i] + static_cast<long long>(m_bytes.size());
        const long long entry = bytes > 0 ? 256 * offset / bytes : 0;
        Put(kTable + i, static_cast<std::uint32_t>(std::min(entry, 255LL)), 1);
    }
    FillTag(truth);
    return m_bytes;
}

void HeaderFrame::FillTag(const HeaderTruth& truth) {
    constexpr std::uint8_t kConstant = 1;
    constexpr std::uint8_t kConstantTwoPass = 8;
    constexpr std::uint8_t kNotProtected = 1;
    const auto bytes = static_cast<std::uint32_t>(m_bytes.size() + truth.audioBytes);
    std::uint8_t& method = m_bytes[m_identifier + kMethod];
    const bool saysConstant = (method & 0x0FU) == kConstant || (method & 0x0FU) == kConstantTwoPass;
    if (saysConstant &&
        !(truth.isUniform && truth.isConstant && m_bitrateIndex == m_firstBitrateIndex)) {
        method &= 0xF0U;
    }
    const EncoderGap gap = truth.gap ? *truth.gap : m_gap.value_or(EncoderGap{});
    Put(kGap, gap.delay << 12 | gap.padding, 3);
    Put(kMusicLength, bytes, 4);
    Put(kMusicCRC, truth.musicCRC, 2);
    if ((m_bytes[1] & kNotProtected) == 0) {
        const auto sideInfo =
            std::span(m_bytes).subspan(kHeaderBytes + kCRCBytes, m_identifier - kHeaderBytes);
        const std::uint16_t crc = bitstream::FrameCRC(m_bytes.data(), sideInfo);
        m_bytes[kHeaderBytes] = static_cast<std::uint8_t>(crc >> 8);
        m_bytes[kHeaderBytes + 1] = static_cast<std::uint8_t>(crc);
    }
    bitstream::MusicCRC tag;
    tag.Add(std::span(m_bytes).first(m_identifier + kTagCRC));
    Put(kTagCRC, tag.Value(), 2);
}
