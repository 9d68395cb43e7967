#pragma once

#include "mpeg/MPAEndOfFileException.h"
#include "mpeg/MPAStream.h"

#include <string>
#include <utility>
#include <vector>

/// A stream of given bytes. Each read hands out an allocation of just its size, which the next one
/// frees: the address sanitizer sees who reads too far or holds on to the bytes.
class MemoryStream : public CMPAStream {
public:
    explicit MemoryStream(std::string bytes) : CMPAStream("memory"), m_bytes(std::move(bytes)) {}

    long long GetSize() const override { return static_cast<long long>(m_bytes.size()); }
    unsigned char* ReadBytes(unsigned int size, long long& offset, bool moveOffset,
                             bool /*reverse*/) const override {
        if (offset < 0 || offset > GetSize() - size) {
            throw CMPAEndOfFileException(GetFileName());
        }
        const auto begin = m_bytes.begin() + offset;
        m_read = std::vector<unsigned char>(begin, begin + size);
        offset += moveOffset ? size : 0;
        return m_read.data();
    }

private:
    std::string m_bytes;
    mutable std::vector<unsigned char> m_read;
};
