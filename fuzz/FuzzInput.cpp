#include "fuzz/FuzzInput.h"

#include "tests/support/TemporaryFolder.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

FuzzInput::FuzzInput(const std::uint8_t* bytes, std::size_t size) : m_descriptor(OpenMemoryFile()) {
    const std::size_t choices = std::min(size, kChoiceBytes);
    std::copy_n(bytes, choices, m_choices);
    m_file.assign(bytes + choices, bytes + size);
    m_path = "/proc/self/fd/" + std::to_string(m_descriptor);
    Require(pwrite(m_descriptor, m_file.data(), m_file.size(), 0) ==
                static_cast<ssize_t>(m_file.size()),
            "there is memory for the file");
}

FuzzInput::~FuzzInput() {
    close(m_descriptor);
}

bool FuzzInput::IsUntouched() const {
    return ReadDescriptor(m_descriptor) == m_file;
}

unsigned int FuzzInput::Number(std::size_t index) const {
    return static_cast<unsigned int>(m_choices[1 + 2 * index] << 8 | m_choices[2 + 2 * index]);
}

float FuzzInput::Seconds(std::size_t index) const {
    constexpr float kUnits[] = {0.001F, 0.026F, 1.0F, 100000.0F};
    const unsigned int number = Number(index);
    return static_cast<float>(number & 0x3FFFU) * kUnits[number >> 14];
}

const std::string& FuzzFolder() {
    static const TemporaryFolder folder;
    static const std::string path = folder.Path("");
    return path;
}

std::string ReadDescriptor(int descriptor) {
    struct stat status {};
    fstat(descriptor, &status);
    std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
    const ssize_t count = pread(descriptor, bytes.data(), bytes.size(), 0);
    bytes.resize(static_cast<std::size_t>(std::max(count, ssize_t{0})));
    return bytes;
}

std::string ReadPath(const std::string& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    Require(descriptor >= 0, "an output can be read");
    std::string bytes = ReadDescriptor(descriptor);
    close(descriptor);
    return bytes;
}

int OpenMemoryFile() {
    const int descriptor = memfd_create("klipra-fuzz", MFD_CLOEXEC);
    if (descriptor < 0) {
        throw std::runtime_error("no file in memory");
    }
    return descriptor;
}
