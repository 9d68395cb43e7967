#include "audio/KnownHeaders.h"

const FrameHeader* KnownHeaders::ParseAnew(const std::uint8_t* bytes, std::uint32_t bits,
                                           Known& known) {
    const auto header = FrameHeader::Parse(bytes);
    if (!header) {
        return nullptr;
    }
    known = {bits, *header};
    return &known.header;
}
