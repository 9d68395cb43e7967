#pragma once

#include <vector>

class CVBRHeader;

/// What is to be written over a VBR header to make it describe a new file.
struct VBRFields {
    long long offset = 0; ///< where, in bytes from the header's identifier
    std::vector<unsigned char> bytes;
};

/// The header's counts and, for Xing/Info, a seek table made from its rewrite table: every field
/// that the header holds in the source, and no other. Throws CMPAException when the source cannot
/// be read.
VBRFields MakeVBRFields(const CVBRHeader& header);

/// The value with its four bytes in reverse order.
unsigned LittleEndianToBigEndian(unsigned value);
