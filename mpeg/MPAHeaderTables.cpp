#include "mpeg/MPAHeader.h"

// The tables of ISO/IEC 11172-3 and 13818-3; MPEG 2.5 halves the sampling rates of MPEG 2 once
// more.

// clang-format off
const unsigned int CMPAHeader::m_dwSamplingRates[4][3] = {
    {11025, 12000, 8000},
    {0, 0, 0},
    {22050, 24000, 16000},
    {44100, 48000, 32000},
};

const unsigned int CMPAHeader::m_dwBitrates[2][3][15] = {
    {
        {0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
        {0, 32, 48, 56,  64,  80,  96, 112, 128, 160, 192, 224, 256, 320, 384},
        {0, 32, 40, 48,  56,  64,  80,  96, 112, 128, 160, 192, 224, 256, 320},
    },
    {
        {0, 32, 48, 56,  64,  80,  96, 112, 128, 144, 160, 176, 192, 224, 256},
        {0,  8, 16, 24,  32,  40,  48,  56,  64,  80,  96, 112, 128, 144, 160},
        {0,  8, 16, 24,  32,  40,  48,  56,  64,  80,  96, 112, 128, 144, 160},
    },
};

const unsigned int CMPAHeader::m_dwSamplesPerFrames[2][3] = {
    {384, 1152, 1152},
    {384, 1152,  576},
};

const unsigned int CMPAHeader::m_dwCoefficients[2][3] = {
    {12, 144, 144},
    {12, 144,  72},
};

const unsigned int CMPAHeader::m_dwSlotSizes[3] = {4, 1, 1};

const unsigned int CMPAHeader::m_dwSideInfoSizes[2][2] = {
    {32, 17},
    {17,  9},
};

const bool CMPAHeader::m_bAllowedModes[15][2] = {
    {true,  true},
    {false, true},
    {false, true},
    {false, true},
    {true,  true},
    {false, true},
    {true,  true},
    {true,  true},
    {true,  true},
    {true,  true},
    {true,  true},
    {true,  false},
    {true,  false},
    {true,  false},
    {true,  false},
};
// clang-format on

const char* const CMPAHeader::m_szMPEGVersions[4] = {"MPEG 2.5", "", "MPEG 2", "MPEG 1"};
const char* const CMPAHeader::m_szLayers[3] = {"Layer I", "Layer II", "Layer III"};
const char* const CMPAHeader::m_szChannelModes[4] = {"Stereo", "Joint Stereo", "Dual Channel",
                                                     "Single Channel"};
const char* const CMPAHeader::m_szEmphasis[4] = {"None", "50/15ms", "", "CCIT J.17"};
