#pragma once

#include <cstdint>

/// The side information of a Layer III frame, which follows the header and its CRC: where the
/// frame's main data begin and how long its parts are (ISO/IEC 11172-3, 2.4.1.7; 13818-3,
/// 2.4.1.7).
namespace bitstream {

/// How far back main_data_begin can point, bytes of main data.
constexpr unsigned int MaxMainDataBegin(bool isLSF) {
    return isLSF ? 255 : 511;
}

/// One channel's part of a granule; numbers as in the bytes.
struct GranuleInfo {
    unsigned int part2And3Bits = 0; ///< scale factors and Huffman code
    unsigned int bigValues = 0;     ///< pairs of lines
    bool isWindowSwitched = false;
    unsigned int blockType = 0; ///< of a switched window; 0 is reserved there
};

/// What cutting and playing have to know of it.
struct SideInfo {
    static constexpr unsigned int kMaxGranules = 2;
    static constexpr unsigned int kMaxChannels = 2;
    static constexpr unsigned int kMaxBigValues = 288; ///< a granule has 576 lines

    /// @param bytes  FrameFacts::SideInfoBytes() of them
    static SideInfo Read(const std::uint8_t* bytes, bool isLSF, bool isSingleChannel);

    /// Reads no more than that.
    static unsigned int ReadMainDataBegin(const std::uint8_t* bytes, bool isLSF);
    /// Changes nothing else in the bytes.
    /// @param begin  bytes, at most MaxMainDataBegin
    static void WriteMainDataBegin(std::uint8_t* bytes, bool isLSF, unsigned int begin);

    /// That the granules use; whole bytes.
    unsigned int MainDataBytes() const;
    /// Whether a decoder can make sense of the numbers.
    bool IsSound() const;

    unsigned int mainDataBegin = 0; ///< bytes before the frame's own main data
    unsigned int granules = 0;
    unsigned int channels = 0;
    GranuleInfo parts[kMaxGranules][kMaxChannels];
};

} // namespace bitstream
