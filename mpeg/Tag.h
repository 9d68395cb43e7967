#pragma once

#include <optional>
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

    /// Takes the size that was measured. An appended tag's offset, until now that of its footer or
    /// closing marker, becomes that of its first byte.
    /// @param bytes        nothing for a damaged tag: throws CMPAEndOfFileException
    /// @param footerBytes  from there to the tag's end
    void SetSize(std::optional<long long> bytes, unsigned int footerBytes);

    CMPAStream* m_stream;
    long long m_offset;
    unsigned int m_size;
    bool m_isAppended;
    float m_version = 0.0F;

private:
    std::string m_name;
};
