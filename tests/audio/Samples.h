#pragma once

#include "audio/OpenDecoder.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

using Samples = std::vector<std::int16_t>;

/// The bytes of a clip of tests/clips, so many times over.
inline std::string Clip(const std::string& name, int times = 1) {
    std::string repeated;
    while (times-- > 0) {
        repeated += TemporaryFolder::Read(KLIPRA_CLIPS "/" + name);
    }
    return repeated;
}

/// So many sample frames, or all that are left, in reads of changing sizes.
inline Samples ReadOn(Decoder& decoder, std::int64_t sampleFrames = INT64_MAX) {
    const std::int64_t channels = decoder.Format().channels;
    Samples all;
    for (std::int64_t count = 1; sampleFrames > 0; count = count % 5000 + 997) {
        const auto samples = decoder.Read(std::min(count, sampleFrames));
        if (samples.empty()) {
            break;
        }
        EXPECT_LE(std::ssize(samples), std::min(count, sampleFrames) * channels);
        all.insert(all.end(), samples.begin(), samples.end());
        sampleFrames -= std::ssize(samples) / channels;
    }
    return all;
}

/// Opens a file with the library's own reading.
inline std::unique_ptr<Decoder> OpenDecoder(const std::string& path, unsigned threads) {
    const auto file = File::Open(path.c_str());
    return file ? OpenDecoder(file, threads) : nullptr;
}

/// What a file decodes to; empty when it cannot be opened.
inline Samples DecodeFile(const std::string& path) {
    const auto decoder = OpenDecoder(path, 1);
    return decoder ? ReadOn(*decoder) : Samples();
}
