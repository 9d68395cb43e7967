#include "mpeg/MPAException.h"

#include "platform/Desktop.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

const std::array<const char*, 11> CMPAException::m_szErrors = {
    "Can't open the file.",
    "Can't set file position.",
    "Can't read from file.",
    "No VBR Header found.",
    "Incomplete VBR Header.",
    "No frame found within tolerance range.",
    "No frame found before end of file was reached.",
    "Header corrupt",
    "Free Bitrate currently not supported",
    "Incompatible Header",
    "Corrupt Lyrics3 Tag",
};

CMPAException::CMPAException(ErrorIDs id, const char* fileName, const char* functionName,
                             bool showErrno)
    : m_id(id), m_showErrno(showErrno), m_functionName(functionName == nullptr ? "" : functionName),
      m_fileName(fileName == nullptr ? "" : fileName) {
}

CMPAException::CMPAException(const CMPAException& other)
    : m_id(other.m_id), m_showErrno(other.m_showErrno), m_functionName(other.m_functionName),
      m_fileName(other.m_fileName) {
}

CMPAException::~CMPAException() = default;

const char* CMPAException::GetErrorDescription() {
    const int lastError = errno;
    std::string text;
    if (!m_functionName.empty()) {
        text += m_functionName + ": ";
    }
    if (!m_fileName.empty()) {
        text += "'" + m_fileName + "'\n";
    }
    text += m_szErrors[m_id];
    if (m_showErrno) {
        text += ": " + std::to_string(lastError);
    }
    AppendToDescription(text); // at once, so that nothing follows where it is cut
    return m_description.data();
}

void CMPAException::ShowError() {
    ShowErrorMsg(GetErrorDescription());
}

void CMPAException::AppendToDescription(const std::string& text) {
    const std::size_t used = std::strlen(m_description.data());
    std::size_t count = std::min(text.size(), kDescriptionSize - 1 - used);
    // 10xxxxxx continues a UTF-8 character: never end before one.
    while (count > 0 && count < text.size() && (text[count] & 0xC0) == 0x80) {
        --count;
    }
    std::memcpy(m_description.data() + used, text.data(), count);
}
