#include "audio/OpenDecoder.h"

#include "audio/DecodeAhead.h"
#include "audio/Mp3Decoder.h"
#include "audio/WavDecoder.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace {

bool IsRiff(const File& file) {
    constexpr const char* kForms[] = {"RIFF", "RF64", "BW64"};
    char identifier[4] = {};
    const auto read = file.ReadAt(0, identifier, sizeof identifier);
    if (read.error != 0) {
        file.Failures().Report({0, {static_cast<std::int64_t>(read.bytes), read.error}});
    }
    return read.bytes == sizeof identifier &&
           std::any_of(std::begin(kForms), std::end(kForms), [&](const char* form) {
               return std::memcmp(identifier, form, sizeof identifier) == 0;
           });
}

} // namespace

std::unique_ptr<Decoder> OpenDecoder(const std::shared_ptr<const File>& file, unsigned threads) {
    if (IsRiff(*file)) {
        if (auto wav = WavDecoder::Open(file)) {
            return wav;
        }
    }
    const auto mp3 = Mp3File::Open(file);
    if (!mp3) {
        return nullptr;
    }
    // What fits into a block is decoded as soon as a thread would be running.
    if (threads > 1 && mp3->index->Blocks().size() > 1) {
        return std::make_unique<DecodeAhead>(*mp3, threads);
    }
    return std::make_unique<Mp3Decoder>(*mp3);
}

unsigned DecodeThreads() {
    constexpr unsigned kMaxDefault = 16; // each costs about five megabytes of buffers
    constexpr unsigned kMaxChosen = 64;
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing in the program writes to the environment
    if (const char* chosen = std::getenv("KLIPRA_DECODE_THREADS")) {
        const long count = std::strtol(chosen, nullptr, 10);
        if (count >= 1) {
            return static_cast<unsigned>(std::min(count, long{kMaxChosen}));
        }
    }
    return std::clamp(std::thread::hardware_concurrency(), 1U, kMaxDefault);
}
