#pragma once

#include <array>
#include <cstddef>
#include <string>

/// A failure of the MPEG audio parser, thrown by value and caught by reference.
class CMPAException {
public:
    enum ErrorIDs : unsigned int {
        CantOpenFile,
        CantSetFilePosition,
        CantReadFromFile,
        NoVBRHeaderFound,
        IncompleteVBRHeader,
        NoFrameWithinTolerance,
        NoFrameBeforeEOF,
        HeaderCorrupt,
        FreeBitrateNotSupported,
        IncompatibleHeader,
        CorruptLyrics3Tag,
    };

    /// @param fileName      the file that was parsed; null for none
    /// @param functionName  the operation that failed; null for none
    /// @param showErrno     whether the description ends with the C library's errno
    CMPAException(ErrorIDs id, const char* fileName, const char* functionName, bool showErrno);

    /// The copy describes the same failure; its description is built anew.
    CMPAException(const CMPAException& other);
    CMPAException& operator=(const CMPAException&) = delete;
    virtual ~CMPAException();

    ErrorIDs GetErrorID() const { return m_id; }

    /// The failure in words, UTF-8: operation, file, message and the value that errno has now, as
    /// far as they apply; cut at a whole character where it is longer than 255 bytes.
    ///
    /// Each call appends to the text of the one before, so it is called once per exception.
    /// The pointer lives as long as the exception.
    const char* GetErrorDescription();

    /// Shows the description to the user. Once per exception, see GetErrorDescription.
    void ShowError();

    /// The messages, indexed by ErrorIDs.
    static const std::array<const char*, 11> m_szErrors;

private:
    static constexpr std::size_t kDescriptionSize = 256;

    void AppendToDescription(const std::string& text);

    ErrorIDs m_id;
    bool m_showErrno;
    std::string m_functionName;
    std::string m_fileName;
    std::array<char, kDescriptionSize> m_description{};
};
