#include "mpeg/Tag.h"

#include "mpeg/MPAEndOfFileException.h"
#include "mpeg/MPAStream.h"

CTag::CTag(CMPAStream* stream, const char* name, bool appended, long long offset, unsigned int size)
    : m_stream(stream), m_offset(offset), m_size(size), m_isAppended(appended), m_name(name) {
}

CTag::~CTag() = default;

void CTag::SetVersion(unsigned char major, unsigned char minor, unsigned char release) {
    m_version = static_cast<float>(major) + static_cast<float>(minor) * 0.1F +
                static_cast<float>(release) * 0.01F;
}

void CTag::SetSize(std::optional<long long> bytes, unsigned int footerBytes) {
    if (!bytes) {
        throw CMPAEndOfFileException(m_stream->GetFileName());
    }
    m_size = static_cast<unsigned int>(*bytes);
    if (m_isAppended) {
        m_offset += footerBytes - *bytes;
    }
}
