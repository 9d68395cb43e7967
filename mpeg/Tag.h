#pragma once

#include <string>

class CMPAStream;

/// A metadata tag in an MPEG audio file: where it lies and how long it is. Its contents are not
/// read. Base of one class for each kind.
///
/// Every kind has a static FindTag, which looks for a tag of its kind before the end offset
/// (appended) or at the begin offset, both in bytes, and returns it, owned by the caller, or null
/// when there is none. A finder throws CMPAException when the tag it found is damaged and when it
/// has to read beyond either end of the file.
class CTag {
public:
    CTag(const CTag&) = delete;
    CTag& operator=(const CTag&) = delete;
    virtual ~CTag();

    long long GetOffset() const { return m_offset; } ///< of the first byte
    unsigned int GetSize() const { return m_size; }  ///< bytes of the whole tag
    long long GetEnd() const { return m_offset + m_size; }
    bool IsAppended() const { return m_isAppended; }      ///< stands at the end of the file
    float GetVersion() const { return m_version; }        ///< of the tag's format
    const std::string& GetName() const { return m_name; } ///< of the tag's kind

protected:
    CTag(CMPAStream* stream, const char* name, bool appended, long long offset,
         unsigned int size = 0);

    /// version = major + minor / 10 + release / 100
    void SetVersion(unsigned char major, unsigned char minor, unsigned char release);

    /// Whether the text stands at the offset. Throws CMPAException when it cannot be read.
    static bool HasText(CMPAStream* stream, long long offset, const char* text,
                        bool reverse = false);

    /// The number that a text begins with, after blanks: digits with a sign and a fraction where
    /// there are any, 0 where there is none. The same in every locale.
    static float ParseDecimal(const std::string& text);

    /// Bytes of the file as text. Throws CMPAException when they cannot be read.
    static std::string ReadText(CMPAStream* stream, long long offset, unsigned int size,
                                bool reverse);

    CMPAStream* m_stream;
    long long m_offset;
    unsigned int m_size;
    bool m_isAppended;
    float m_version = 0.0F;

private:
    std::string m_name;
};
