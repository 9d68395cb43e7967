#include "cutting/VBRFields.h"

#include "mpeg/XINGHeader.h"

#include <cstdint>

namespace {

constexpr long long kXINGFieldsOffset = 8;  // behind identifier and flags
constexpr long long kVBRICountsOffset = 10; // behind identifier, version, delay and quality

void PutBigEndian(std::vector<unsigned char>& bytes, unsigned int value) {
    const unsigned int reversed = LittleEndianToBigEndian(value);
    for (int shift = 0; shift < 32; shift += 8) {
        bytes.push_back(static_cast<unsigned char>(reversed >> shift));
    }
}

// Each entry tells where in the file a hundredth of the playing time begins, in 256ths of its
// bytes. A hundredth that no frame begins in starts where the one before does.
void PutSeekTable(std::vector<unsigned char>& bytes, const CVBRHeader& header) {
    std::uint64_t position = 0;
    for (unsigned int slot = 0; slot < header.GetTableSize(); ++slot) {
        if (header.GetRewriteTable()[slot] != 0) {
            position = header.GetRewriteTable()[slot];
        }
        bytes.push_back(static_cast<unsigned char>(position * 256 / header.GetByteCount()));
    }
}

} // namespace

VBRFields MakeVBRFields(const CVBRHeader& header) {
    VBRFields fields{kVBRICountsOffset, {}};
    const auto* xing = dynamic_cast<const CXINGHeader*>(&header);
    if (xing == nullptr) {
        PutBigEndian(fields.bytes, header.GetByteCount());
        PutBigEndian(fields.bytes, header.GetFrameCount());
        return fields;
    }
    fields.offset = kXINGFieldsOffset;
    // The counts do not tell which fields are there: one may be 0, or have been worked out.
    const unsigned int flags = xing->ReadFlags();
    if ((flags & CXINGHeader::kFrameCount) != 0) {
        PutBigEndian(fields.bytes, header.GetFrameCount());
    }
    if ((flags & CXINGHeader::kByteCount) != 0) {
        PutBigEndian(fields.bytes, header.GetByteCount());
    }
    if ((flags & CXINGHeader::kSeekTable) != 0 && header.GetByteCount() != 0) {
        PutSeekTable(fields.bytes, header);
    }
    return fields;
}

unsigned LittleEndianToBigEndian(unsigned value) {
    return value >> 24 | (value >> 8 & 0xFF00U) | (value << 8 & 0xFF0000U) | value << 24;
}
