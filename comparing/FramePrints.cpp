#include "comparing/FramePrints.h"

#include "bitstream/FrameFacts.h"
#include "bitstream/SideInfo.h"
#include "finish/SourceFrames.h"

#define XXH_INLINE_ALL
#include <algorithm>
#include <array>
#include <limits>
#include <span>
#include <xxhash.h>

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kHeaderBytes = 4;
constexpr std::size_t kCRCBytes = 2;

// 0 stands for no hash.
std::uint64_t Hash(Bytes bytes, std::uint64_t seed = 0) {
    return std::max<std::uint64_t>(XXH3_64bits_withSeed(bytes.data(), bytes.size(), seed), 1);
}

/// Follows the main data of the frames of a stream.
class Printer {
public:
    FramePrint Print(Bytes frame) {
        FramePrint print{.bytes = Hash(frame)};
        bitstream::FrameFacts facts;
        if (bitstream::DecodeHeader(frame.data(), facts) != bitstream::HeaderState::Sound ||
            facts.layer != 2) {
            m_mainData.clear();
            return print;
        }
        const std::size_t sideInfo = kHeaderBytes + (facts.isCRCProtected ? kCRCBytes : 0);
        if (frame.size() < sideInfo + facts.SideInfoBytes()) {
            m_mainData.clear();
            return print;
        }
        PrintSound(frame, facts, sideInfo, print);
        return print;
    }

private:
    void PrintSound(Bytes frame, const bitstream::FrameFacts& facts, std::size_t offset,
                    FramePrint& print) {
        const Bytes payload = frame.subspan(offset + facts.SideInfoBytes());
        const auto info =
            bitstream::SideInfo::Read(frame.data() + offset, facts.isLSF, facts.IsSingleChannel());
        const std::size_t before = m_mainData.size();
        m_mainData.insert(m_mainData.end(), payload.begin(), payload.end());
        print.isMute = info.MainDataBytes() == 0;
        if (info.mainDataBegin <= before &&
            info.MainDataBytes() <= info.mainDataBegin + payload.size()) {
            const Bytes data =
                Bytes(m_mainData).subspan(before - info.mainDataBegin, info.MainDataBytes());
            print.sound = Hash(data, HashFacts(frame, facts, offset));
        }
        const std::size_t most = bitstream::MaxMainDataBegin(facts.isLSF);
        if (m_mainData.size() > most) {
            m_mainData.erase(m_mainData.begin(),
                             m_mainData.end() - static_cast<std::ptrdiff_t>(most));
        }
    }

    /// Of what a decoder has to know beside the main data: not of how large the frame is, nor of
    /// where the data begin.
    static std::uint64_t HashFacts(Bytes frame, const bitstream::FrameFacts& facts,
                                   std::size_t offset) {
        constexpr std::uint8_t kBitrateAndPadding = 0xF2;
        std::array<std::uint8_t, kHeaderBytes + bitstream::kSideInfoBytes[0][0]> known{};
        std::copy_n(frame.begin(), kHeaderBytes, known.begin());
        known[2] = static_cast<std::uint8_t>(known[2] & ~kBitrateAndPadding);
        std::uint8_t* const sideInfo = known.data() + kHeaderBytes;
        std::copy_n(frame.begin() + static_cast<std::ptrdiff_t>(offset), facts.SideInfoBytes(),
                    sideInfo);
        bitstream::SideInfo::WriteMainDataBegin(sideInfo, facts.isLSF, 0);
        return Hash(known);
    }

    std::vector<std::uint8_t> m_mainData; // the last of the stream
};

} // namespace

std::vector<FramePrint> ReadFramePrints(CMPAFile& file) {
    SourceFrames frames(file);
    std::vector<FramePrint> prints;
    Printer printer;
    frames.Pass(std::numeric_limits<long long>::max(),
                [&](Bytes frame) { prints.push_back(printer.Print(frame)); });
    return prints;
}
