#include "audio/KnownHeaders.h"

#include <gtest/gtest.h>

namespace {

void ExpectParsedAsAnew(KnownHeaders& known, std::uint32_t bits) {
    const std::uint8_t bytes[] = {
        static_cast<std::uint8_t>(bits >> 24), static_cast<std::uint8_t>(bits >> 16 & 0xFFU),
        static_cast<std::uint8_t>(bits >> 8 & 0xFFU), static_cast<std::uint8_t>(bits & 0xFFU)};
    const auto anew = FrameHeader::Parse(bytes);
    const FrameHeader* header = known.Parse(bytes);
    ASSERT_EQ(header != nullptr, anew.has_value()) << std::hex << bits;
    ASSERT_TRUE(header == nullptr || *header == *anew) << std::hex << bits;
}

} // namespace

// Behind a header that differs in a single bit what is remembered is nearest to being taken
// wrongly.
TEST(KnownHeaders, AreWhatParsingThemAnewGives) {
    constexpr std::uint32_t kStep = 61; // every bit takes both values many times
    KnownHeaders known;
    for (std::uint32_t bits = 0xFFFFFFFFU; bits >= 0xFFE00000U; bits -= kStep) {
        for (unsigned int bit = 0; bit < 32; ++bit) {
            ASSERT_NO_FATAL_FAILURE(ExpectParsedAsAnew(known, bits));
            ASSERT_NO_FATAL_FAILURE(ExpectParsedAsAnew(known, bits ^ 1U << bit));
        }
    }
}
