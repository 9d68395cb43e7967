#include "fuzz/FuzzInput.h"

#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <sys/mman.h>

FuzzInput::FuzzInput(const std::uint8_t* bytes, std::size_t size)
    : m_memory(OpenMemoryFile()), m_path(PathOf(m_memory)) {
    const std::size_t choices = std::min(size, kChoiceBytes);
    std::copy_n(bytes, choices, m_choices);
    m_file.assign(bytes + choices, bytes + size);
    std::fwrite(m_file.data(), 1, m_file.size(), m_memory.get());
    std::fflush(m_memory.get());
    Require(IsUntouched(), "there is memory for the file");
}

bool FuzzInput::IsUntouched() const {
    return ReadPath(m_path) == m_file;
}

unsigned int FuzzInput::Number(std::size_t index) const {
    return static_cast<unsigned int>(m_choices[1 + 2 * index] << 8 | m_choices[2 + 2 * index]);
}

float FuzzInput::Seconds(std::size_t index) const {
    constexpr float kUnits[] = {0.001F, 0.026F, 1.0F, 100000.0F};
    const unsigned int number = Number(index);
    return static_cast<float>(number & 0x3FFFU) * kUnits[number >> 14];
}

std::string FuzzPath(const std::string& name) {
    static const TemporaryFolder folder;
    return folder.Path(name);
}

std::string ReadPath(const std::string& path) {
    const FilePointer file = OpenRegularFile(path.c_str());
    Require(file != nullptr, "an output can be read");
    std::string bytes(std::filesystem::file_size(path), '\0');
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
    return bytes;
}

FilePointer OpenMemoryFile() {
    FilePointer file(fdopen(memfd_create("klipra-fuzz", MFD_CLOEXEC), "wb"));
    Require(file != nullptr, "there is memory for a file");
    return file;
}

std::string PathOf(const FilePointer& file) {
    return "/proc/self/fd/" + std::to_string(fileno(file.get()));
}
