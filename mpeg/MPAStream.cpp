#include "mpeg/MPAStream.h"

#include <cassert>

CMPAStream::CMPAStream(const char* fileName) : m_fileName(fileName) {
}

CMPAStream::~CMPAStream() = default;

unsigned int CMPAStream::ReadLEValue(unsigned int bytes, long long& offset, bool moveOffset) const {
    assert(bytes <= sizeof(unsigned int));
    const unsigned char* data = ReadBytes(bytes, offset, moveOffset, false);
    unsigned int value = 0;
    for (unsigned int i = bytes; i > 0; --i) {
        value = value << 8 | data[i - 1];
    }
    return value;
}

unsigned int CMPAStream::ReadBEValue(unsigned int bytes, long long& offset, bool moveOffset) const {
    assert(bytes <= sizeof(unsigned int));
    const unsigned char* data = ReadBytes(bytes, offset, moveOffset, false);
    unsigned int value = 0;
    for (unsigned int i = 0; i < bytes; ++i) {
        value = value << 8 | data[i];
    }
    return value;
}
