#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

/// An empty folder of the test's own, removed with all that is in it.
class TemporaryFolder {
public:
    TemporaryFolder() : m_path(std::filesystem::temp_directory_path() / "klipra-test-XXXXXX") {
        if (mkdtemp(m_path.data()) == nullptr) {
            throw std::runtime_error("no temporary folder: " + m_path);
        }
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    std::string Path(const std::string& name) const { return m_path + "/" + name; }

    /// Writes a file and returns its path.
    std::string Write(const std::string& name, const std::string& bytes) const {
        std::ofstream(Path(name), std::ios::binary) << bytes;
        return Path(name);
    }

    /// All bytes of a file, wherever it lies; empty when it cannot be read.
    static std::string Read(const std::string& path) {
        std::ostringstream bytes;
        bytes << std::ifstream(path, std::ios::binary).rdbuf();
        return bytes.str();
    }

private:
    std::string m_path;
};
