#pragma once

#include "platform/RegularFile.h"

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

/// What a fuzz target is given: a few bytes that choose what it does, then those of a file.
///
/// The file lies in memory and is a new one for each input, so that nothing is known of it yet.
class FuzzInput {
public:
    static constexpr std::size_t kChoiceBytes = 8;

    /// @param bytes  choices and file; whatever is missing of the choices is 0
    FuzzInput(const std::uint8_t* bytes, std::size_t size);

    const std::string& Path() const { return m_path; }
    const std::string& File() const { return m_file; } ///< what the file was made of
    bool IsUntouched() const;                          ///< the file still holds just that

    /// A choice between two things, in the first byte.
    /// @param bit  0 to 7
    bool Flag(int bit) const { return (m_choices[0] >> bit & 1) != 0; }

    /// A number of 16 bits, in the others.
    /// @param index  0 to 2
    unsigned int Number(std::size_t index) const;

    /// The same number as a time in seconds: to the millisecond where it is short, to years.
    float Seconds(std::size_t index) const;

private:
    FilePointer m_memory;
    std::string m_path;
    std::string m_file;
    std::uint8_t m_choices[kChoiceBytes] = {};
};

/// A result is not what it has to be for any bytes in a file.
class LawBroken : public std::logic_error {
public:
    using std::logic_error::logic_error;
};

/// Throws LawBroken where the law does not hold.
inline void Require(bool holds, const char* law) {
    if (!holds) {
        throw LawBroken(law);
    }
}

/// A path in a folder of this process's own, for what a target writes.
std::string FuzzPath(const std::string& name);

/// All bytes of a file. Without the C++ library's streams, in which a sanitizer slows down each
/// byte.
std::string ReadPath(const std::string& path);

/// A file without a name, and what it is reached by while it is open.
FilePointer OpenMemoryFile();
std::string PathOf(const FilePointer& file);
