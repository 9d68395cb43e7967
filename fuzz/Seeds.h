#pragma once

#include <string>
#include <vector>

/// A file to begin with: a sound one, or one that is wrong in a way worth knowing.
struct Seed {
    std::string name;
    std::string file;
};

std::vector<Seed> Mp3Seeds();
std::vector<Seed> WavSeeds();

/// The beginnings of a file that end at each boundary, a byte before and a byte behind it.
std::vector<Seed> Beginnings(const Seed& seed, const std::vector<long long>& boundaries);

/// What a fuzz target takes: choices (see FuzzInput), then a file.
std::string AsInput(const std::string& choices, const std::string& file);
