#include "mpeg/MPAFileStream.h"

#include "mpeg/MPAException.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <random>

namespace {

std::string Read(const CMPAStream& stream, long long offset, unsigned int size, bool reverse) {
    return {reinterpret_cast<const char*>(stream.ReadBytes(size, offset, false, reverse)), size};
}

TEST(CMPAFileStream, ReadsAnyRangeInAnyOrderAndNoByteBeyondTheFile) {
    const TemporaryFolder folder;
    std::mt19937 random(1); // NOLINT(bugprone-random-generator-seed): the same reads in every run
    for (const unsigned int fileSize : {0U, 1U, 100U, 600U, 1024U, 1025U, 400'000U}) {
        std::string bytes(fileSize, '\0');
        std::generate(bytes.begin(), bytes.end(), [&] { return static_cast<char>(random()); });
        const CMPAFileStream stream(folder.Write("bytes", bytes).c_str());
        for (int i = 0; i < 1000; ++i) {
            const auto offset = static_cast<long long>(random() % (fileSize + 200)) - 100;
            const auto size =
                static_cast<unsigned int>(1 + random() % (i % 50 == 0 ? fileSize + 1 : 140));
            const bool reverse = random() % 2 != 0;
            SCOPED_TRACE(testing::Message() << size << " at " << offset << " of " << fileSize);
            if (offset >= 0 && offset + size <= fileSize) {
                ASSERT_EQ(Read(stream, offset, size, reverse),
                          bytes.substr(static_cast<std::size_t>(offset), size));
            } else {
                ASSERT_THROW(Read(stream, offset, size, reverse), CMPAException);
            }
        }
        EXPECT_THROW(Read(stream, LLONG_MAX, 0xFFFFFFFF, false), CMPAException);
    }
}

TEST(CMPAException, DescribesItselfInFewerThan256BytesOfWholeCharacters) {
    for (std::size_t asciiBytes = 200; asciiBytes < 260; ++asciiBytes) {
        const std::string path = std::string(asciiBytes, 'a') + "録音録音";
        const std::string whole = "'" + path + "'\nHeader corrupt";
        CMPAException error(CMPAException::HeaderCorrupt, path.c_str(), nullptr, false);
        const std::string text = error.GetErrorDescription();
        EXPECT_TRUE(whole.starts_with(text)) << text;
        EXPECT_TRUE(whole.size() < 256 ? text == whole : text.size() > 252 && text.size() < 256);
        EXPECT_TRUE(text == whole || (whole[text.size()] & 0xC0) != 0x80) << "half a character";
    }
}

} // namespace
