#include "fuzz/Seeds.h"
#include "tests/support/WavBuilder.h"

namespace {

constexpr std::uint32_t kSizes[] = {
    0, 1, 3, 15, 16, 17, 400, 0x7FFFFFFF, 0x80000000, 0x80000001, 0xFFFFFFFE, 0xFFFFFFFF};

const std::string& Samples() {
    static const std::string samples = WavBuilder::Pattern(4000);
    return samples;
}

void AddSound(std::vector<Seed>& seeds) {
    const auto add = [&](const char* name, const WavBuilder& file) {
        seeds.push_back({name, file.Bytes()});
    };
    const std::string list = WavBuilder::Chunk("LIST", "INFOISFT");
    const std::string odd = WavBuilder::Chunk("note", "odd");
    const std::string zero(1, '\0');
    add("plain", {.samples = Samples()});
    add("mono", {.channels = 1, .bytesPerSecond = 44100, .blockAlign = 1, .samples = Samples()});
    add("list", {.chunksBefore = list, .samples = Samples(), .after = list});
    add("odd", {.chunksBefore = odd + list, .samples = Samples()});
    add("odd-padded", {.chunksBefore = odd + zero + list, .samples = Samples()});
    add("odd-samples", {.samples = Samples().substr(1)});
    add("extension", {.formatSize = 18, .formatExtension = {0, 0}, .samples = Samples()});
    add("no-samples", {});
    add("two-data", {.samples = Samples(), .after = WavBuilder::Chunk("data", Samples())});
}

// Every field of the format and every size, each with what no recorder writes.
void AddFields(std::vector<Seed>& seeds) {
    for (const int align : {0, -1, -32768, 1, 3, 32767}) {
        seeds.push_back(
            {"block-align-" + std::to_string(align),
             WavBuilder{.blockAlign = static_cast<std::int16_t>(align), .samples = Samples()}
                 .Bytes()});
    }
    for (const std::uint32_t rate : {0U, 1U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
        const std::string name = std::to_string(rate);
        seeds.push_back({"rate-" + name, WavBuilder{.rateHz = rate, .samples = Samples()}.Bytes()});
        seeds.push_back(
            {"bytes-per-second-" + name,
             WavBuilder{.bytesPerSecond = static_cast<std::int32_t>(rate), .samples = Samples()}
                 .Bytes()});
    }
    for (const int channels : {0, 1, 3, 255, 1024, 65535}) {
        seeds.push_back(
            {"channels-" + std::to_string(channels),
             WavBuilder{.channels = static_cast<std::uint16_t>(channels), .samples = Samples()}
                 .Bytes()});
    }
    for (const int tag : {0, 2, 3, 6, 7, 0x11, 0x31, 0x55, 0xFFFE, 0xFFFF}) {
        seeds.push_back({"format-" + std::to_string(tag),
                         WavBuilder{.formatTag = static_cast<std::uint16_t>(tag),
                                    .formatSize = 40,
                                    .formatExtension = WavBuilder::Pattern(24),
                                    .samples = Samples()}
                             .Bytes()});
    }
    for (const std::uint32_t size : kSizes) {
        const std::string name = std::to_string(size);
        const WavBuilder file{.samples = Samples()};
        seeds.push_back({"riff-" + name, file.Bytes().replace(4, 4, WavBuilder::Number(4, size))});
        seeds.push_back(
            {"format-size-" + name, WavBuilder{.formatSize = size, .samples = Samples()}.Bytes()});
        seeds.push_back(
            {"data-size-" + name, WavBuilder{.samples = Samples(), .dataSize = size}.Bytes()});
        seeds.push_back({"chunk-size-" + name,
                         WavBuilder{.chunksBefore = "junk" + WavBuilder::Number(4, size) + "....",
                                    .samples = Samples()}
                             .Bytes()});
    }
}

void AddChunks(std::vector<Seed>& seeds) {
    for (const int count : {9998, 9999, 20000}) {
        std::string chunks;
        for (int i = 0; i < count; ++i) {
            chunks += WavBuilder::Chunk("junk", "");
        }
        seeds.push_back({"many-chunks-" + std::to_string(count),
                         WavBuilder{.chunksBefore = chunks, .samples = Samples()}.Bytes()});
    }
    const std::string plain = WavBuilder{.samples = Samples()}.Bytes();
    for (const char* id : {"RIFX", "RF64", "FORM", "riff"}) {
        seeds.push_back({id, std::string(plain).replace(0, 4, id)});
    }
    seeds.push_back({"data-first", std::string(plain).replace(12, 4, "data")});
    const std::string with =
        WavBuilder{.chunksBefore = WavBuilder::Chunk("LIST", "odd"), .samples = Samples()}.Bytes();
    for (Seed& seed : Beginnings({"beginning", with}, {4, 8, 12, 16, 20, 24, 28, 32, 36, 40, 44, 47,
                                                       51, 55, 59, 4055})) {
        seeds.push_back(std::move(seed));
    }
}

} // namespace

std::vector<Seed> WavSeeds() {
    std::vector<Seed> seeds;
    for (const auto& add : {AddSound, AddFields, AddChunks}) {
        add(seeds);
    }
    return seeds;
}
