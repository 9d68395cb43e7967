#include "fuzz/Seeds.h"

#include "fuzz/FuzzInput.h"

#include <algorithm>

std::vector<Seed> Beginnings(const Seed& seed, const std::vector<long long>& boundaries) {
    std::vector<Seed> beginnings;
    for (const long long boundary : boundaries) {
        for (const long long end : {boundary - 1, boundary, boundary + 1}) {
            const auto size = static_cast<std::size_t>(std::max(0LL, end));
            beginnings.push_back(
                {seed.name + "-" + std::to_string(end), seed.file.substr(0, size)});
        }
    }
    return beginnings;
}

std::string AsInput(const std::string& choices, const std::string& file) {
    std::string input = choices;
    input.resize(FuzzInput::kChoiceBytes);
    return input + file;
}
