#pragma once

#include <gtest/gtest.h>
#include <mpg123.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <string>
#include <vector>

using Floats = std::vector<float>;

/// What libmpg123 makes of a file, one value a sample.
struct Decoded {
    int rateHz = 0;
    int channels = 0;
    Floats samples;

    long long SampleFrames() const { return static_cast<long long>(samples.size()) / channels; }
    /// Sample frames [begin, end).
    Floats Part(long long begin, long long end) const {
        return {samples.begin() + begin * channels, samples.begin() + end * channels};
    }
};

inline Decoded Decode(const std::string& path, bool isGapless) {
    mpg123_handle* handle = mpg123_new(nullptr, nullptr);
    mpg123_param(handle, MPG123_ADD_FLAGS, MPG123_QUIET | MPG123_FORCE_FLOAT, 0);
    mpg123_param(handle, isGapless ? MPG123_ADD_FLAGS : MPG123_REMOVE_FLAGS, MPG123_GAPLESS, 0);
    Decoded decoded;
    int encoding = 0;
    long rateHz = 0;
    if (mpg123_open(handle, path.c_str()) == MPG123_OK &&
        mpg123_getformat(handle, &rateHz, &decoded.channels, &encoding) == MPG123_OK) {
        decoded.rateHz = static_cast<int>(rateHz);
        Floats part(1 << 16);
        std::size_t bytes = 0;
        while (mpg123_read(handle, part.data(), part.size() * sizeof part[0], &bytes) ==
                   MPG123_OK ||
               bytes > 0) {
            decoded.samples.insert(decoded.samples.end(), part.begin(),
                                   part.begin() +
                                       static_cast<std::ptrdiff_t>(bytes / sizeof part[0]));
        }
    }
    mpg123_delete(handle);
    return decoded;
}

/// The largest difference, in steps of 16 bits.
inline double Difference(const Floats& a, const Floats& b) {
    EXPECT_EQ(a.size(), b.size());
    double difference = 0.0;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        difference = std::max(difference, std::abs(double{a[i]} - double{b[i]}) * 32768.0);
    }
    return difference;
}

/// 0 to below the limit.
class Random {
public:
    explicit Random(unsigned int seed) : m_engine(seed) {}
    int operator()(int limit) {
        return static_cast<int>(m_engine() % static_cast<unsigned>(limit));
    }

private:
    std::mt19937 m_engine;
};

/// What a decoder's phase changes in a sum of single precision.
inline constexpr double kRounding = 0.004;
