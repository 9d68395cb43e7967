#include "comparing/FramePrints.h"

#include "bitstream/FrameFacts.h"
#include "bitstream/SideInfo.h"
#include "comparing/Hash.h"
#include "finish/SourceFrames.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>

namespace {

using Bytes = std::span<const std::uint8_t>;

// 0 stands for no hash.
std::uint64_t Hash(Bytes bytes, std::uint64_t seed = 0) {
    return std::max<std::uint64_t>(HashOf(bytes, seed), 1);
}

/// Follows the main data of the frames of a stream.
class Printer {
public:
    FramePrint Print(Bytes frame) {
        FramePrint print{.bytes = Hash(frame)};
        bitstream::FrameFacts facts;
        if (bitstream::DecodeHeader(frame.data(), facts) == bitstream::HeaderState::Sound &&
            facts.layer == 2 && frame.size() >= facts.SideInfoOffset() + facts.SideInfoBytes()) {
            PrintSound(frame, facts, print);
        } else {
            m_mainData.clear();
        }
        return print;
    }

private:
    void PrintSound(Bytes frame, const bitstream::FrameFacts& facts, FramePrint& print) {
        const Bytes sideInfo = frame.subspan(facts.SideInfoOffset(), facts.SideInfoBytes());
        const Bytes payload = frame.subspan(facts.SideInfoOffset() + facts.SideInfoBytes());
        const auto info =
            bitstream::SideInfo::Read(sideInfo.data(), facts.isLSF, facts.IsSingleChannel());
        const std::size_t before = m_mainData.size();
        m_mainData.insert(m_mainData.end(), payload.begin(), payload.end());
        print.isMute = info.MainDataBytes() == 0;
        if (info.mainDataBegin <= before &&
            info.MainDataBytes() <= info.mainDataBegin + payload.size()) {
            const Bytes data =
                Bytes(m_mainData).subspan(before - info.mainDataBegin, info.MainDataBytes());
            print.sound = Hash(data, HashFacts(frame, facts.isLSF, sideInfo));
        }
        const std::size_t most = bitstream::MaxMainDataBegin(facts.isLSF);
        if (m_mainData.size() > most) {
            m_mainData.erase(m_mainData.begin(),
                             m_mainData.end() - static_cast<std::ptrdiff_t>(most));
        }
    }

    /// Of what a decoder has to know beside the main data: not of how large the frame is, nor of
    /// where the data begin.
    static std::uint64_t HashFacts(Bytes header, bool isLSF, Bytes sideInfo) {
        constexpr std::uint8_t kBitrateAndPadding = 0xF2;
        std::array<std::uint8_t, bitstream::kHeaderBytes + bitstream::kSideInfoBytes[0][0]> known{};
        const auto behind = std::copy_n(header.begin(), bitstream::kHeaderBytes, known.begin());
        known[2] = static_cast<std::uint8_t>(known[2] & ~kBitrateAndPadding);
        std::ranges::copy(sideInfo, behind);
        bitstream::SideInfo::WriteMainDataBegin(&*behind, isLSF, 0);
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
