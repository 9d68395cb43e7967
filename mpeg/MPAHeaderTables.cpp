#include "bitstream/FrameFacts.h"
#include "mpeg/MPAHeader.h"

const unsigned int (&CMPAHeader::m_dwSamplingRates)[4][3] = bitstream::kSamplingRatesHz;
const unsigned int (&CMPAHeader::m_dwBitrates)[2][3][15] = bitstream::kBitratesKbps;
const unsigned int (&CMPAHeader::m_dwSamplesPerFrames)[2][3] = bitstream::kSamplesPerFrame;
const unsigned int (&CMPAHeader::m_dwCoefficients)[2][3] = bitstream::kSlotCoefficients;
const unsigned int (&CMPAHeader::m_dwSlotSizes)[3] = bitstream::kSlotBytes;
const unsigned int (&CMPAHeader::m_dwSideInfoSizes)[2][2] = bitstream::kSideInfoBytes;
const bool (&CMPAHeader::m_bAllowedModes)[15][2] = bitstream::kAllowedModes;

const char* const CMPAHeader::m_szMPEGVersions[4] = {"MPEG 2.5", "", "MPEG 2", "MPEG 1"};
const char* const CMPAHeader::m_szLayers[3] = {"Layer I", "Layer II", "Layer III"};
const char* const CMPAHeader::m_szChannelModes[4] = {"Stereo", "Joint Stereo", "Dual Channel",
                                                     "Single Channel"};
const char* const CMPAHeader::m_szEmphasis[4] = {"None", "50/15ms", "", "CCIT J.17"};
