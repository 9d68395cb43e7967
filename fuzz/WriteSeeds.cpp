#include "fuzz/Seeds.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdio>
#include <filesystem>
#include <string>

// Writes the seeds for libFuzzer into a folder, and with them the beginnings of the files named
// behind it, which are real recordings: what a decoder finds in built frames is never sound.
namespace {

constexpr std::size_t kLargest = std::size_t{64} * 1024;
constexpr std::size_t kBeginning = std::size_t{12} * 1024;

// The flags of FuzzInfo and of the cutters.
constexpr unsigned int kWAV = 2;
constexpr unsigned int kKeep = 1;

// The range to cut is most of the file; half of the files keep it.
void Write(const std::string& folder, const std::vector<Seed>& seeds, unsigned int format) {
    unsigned int number = 0;
    for (const Seed& seed : seeds) {
        if (seed.file.size() > kLargest) {
            continue;
        }
        const unsigned int flags = format | (++number % 2 == 0 ? kKeep : 0U);
        const std::string choices{static_cast<char>(flags), 0, 10, 1, 0};
        std::string name = std::to_string(format);
        name.append("-").append(std::to_string(number)).append("-").append(seed.name);
        std::ofstream(std::filesystem::path(folder) / name, std::ios::binary)
            << AsInput(choices, seed.file);
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs("Usage: write_seeds FOLDER [FILE ...]\n", stderr);
        return 2;
    }
    const std::string folder = argv[1];
    std::filesystem::create_directories(folder);
    std::vector<Seed> files = Mp3Seeds();
    for (int i = 2; i < argc; ++i) {
        files.push_back({std::filesystem::path(argv[i]).filename(),
                         TemporaryFolder::Read(argv[i]).substr(0, kBeginning)});
    }
    Write(folder, files, 0);
    Write(folder, WavSeeds(), kWAV);
    return 0;
}
