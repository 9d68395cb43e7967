#pragma once

#include <string>
#include <vector>

class CMPAStream;

/// What an ID3v2 tag (id3.org, versions 2.2 to 2.4) says of how long the audio is and of places in
/// it.
struct TagLength {
    long long offset = 0;            ///< in the file, of the first digit of TLEN, in milliseconds
    unsigned int digits = 0;         ///< how many there are; 0 for none
    unsigned int step = 1;           ///< bytes from one to the next
    bool isLeft = false;             ///< there is a length, but in a form that is left alone
    std::vector<std::string> places; ///< the names of frames that tell places
};

/// Looks through the tag at an offset; all else in it is stepped over.
/// @param sizeBytes  of the whole tag
/// @return nothing of what is no ID3v2 tag
TagLength FindTagLength(const CMPAStream& stream, long long offset, long long sizeBytes);

/// How a length is written into so many digits; empty when there are too few.
std::string LengthDigits(double seconds, unsigned int digits);
