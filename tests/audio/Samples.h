#pragma once

#include "audio/OpenDecoder.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <mpg123.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

using Samples = std::vector<std::int16_t>;

/// The bytes of a clip of tests/clips, so many times over.
inline std::string Clip(const std::string& name, int times = 1) {
    const std::string clip = TemporaryFolder::Read(KLIPRA_CLIPS "/" + name);
    std::string repeated;
    while (times-- > 0) {
        repeated += clip;
    }
    return repeated;
}

/// All that is left to read, in reads of changing sizes.
inline Samples ReadAll(Decoder& decoder) {
    Samples all;
    for (std::int64_t count = 1;; count = count % 5000 + 997) {
        const auto samples = decoder.Read(count);
        if (samples.empty()) {
            return all;
        }
        EXPECT_LE(samples.size(), static_cast<std::size_t>(count) * decoder.Format().channels);
        all.insert(all.end(), samples.begin(), samples.end());
    }
}

/// What a file decodes to with so many threads; empty when it cannot be opened.
inline Samples DecodeFile(const std::string& path, unsigned threads = 1) {
    const auto decoder = OpenDecoder(path.c_str(), threads);
    if (!decoder) {
        return {};
    }
    Samples samples = ReadAll(*decoder);
    EXPECT_EQ(samples.size(), static_cast<std::size_t>(decoder->Format().sampleFrames) *
                                  decoder->Format().channels);
    return samples;
}

/// What libmpg123 makes of a whole MPEG file by itself, untrimmed.
inline Samples ReferenceDecode(const std::string& mp3) {
    mpg123_handle* handle = mpg123_new(nullptr, nullptr);
    mpg123_param(handle, MPG123_ADD_FLAGS, MPG123_QUIET, 0);
    mpg123_param(handle, MPG123_REMOVE_FLAGS, MPG123_GAPLESS, 0);
    mpg123_open_feed(handle);
    mpg123_feed(handle, reinterpret_cast<const unsigned char*>(mp3.data()), mp3.size());
    Samples all(mp3.size() * 50); // no clip has more samples a byte
    std::size_t bytes = 0;
    while (mpg123_read(handle, all.data(), all.size() * sizeof all[0], &bytes) ==
           MPG123_NEW_FORMAT) {
    }
    all.resize(bytes / sizeof all[0]);
    mpg123_delete(handle);
    return all;
}

/// Reads at places all over the file and compares with what a decode from the beginning has there.
inline void ExpectSeeksAgree(Decoder& decoder, const Samples& whole) {
    const std::int64_t channels = decoder.Format().channels;
    const std::int64_t length = decoder.Format().sampleFrames;
    std::mt19937 random(1);
    for (int i = 0; i < 25; ++i) {
        const auto position = static_cast<std::int64_t>(random() % static_cast<unsigned>(length));
        SCOPED_TRACE(position);
        decoder.Seek(position);
        const std::int64_t end = std::min(position + 3000, length);
        for (std::int64_t at = position; at < end;) {
            const auto samples = decoder.Read(end - at);
            ASSERT_FALSE(samples.empty());
            ASSERT_TRUE(std::equal(samples.begin(), samples.end(), whole.begin() + at * channels));
            at += static_cast<std::int64_t>(samples.size()) / channels;
        }
    }
    decoder.Seek(length);
    EXPECT_TRUE(decoder.Read(1).empty());
}
