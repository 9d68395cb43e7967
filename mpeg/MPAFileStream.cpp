#include "mpeg/MPAFileStream.h"

#include "mpeg/MPAEndOfFileException.h"
#include "platform/RegularFile.h"

#include <algorithm>

namespace {

// A walk over a file jumps back and forth by a frame or two: the C library's buffer holds many of
// them, so that the jumps stay in memory.
constexpr std::size_t kReadAheadBytes = 256 * 1024;

} // namespace

CMPAFileStream::CMPAFileStream(const char* fileName)
    : CMPAStream(fileName), m_file(nullptr), m_ownsFile(true) {
    FilePointer file = OpenRegularFile(fileName);
    if (file == nullptr) {
        throw CMPAException(CMPAException::CantOpenFile, fileName, "CreateFile", true);
    }
    std::setvbuf(file.get(), nullptr, _IOFBF, kReadAheadBytes);
    m_file = file.get();
    Init();
    file.release();
}

CMPAFileStream::CMPAFileStream(const char* fileName, std::FILE* file)
    : CMPAStream(fileName), m_file(file), m_ownsFile(false) {
    Init();
}

CMPAFileStream::~CMPAFileStream() {
    if (m_ownsFile) {
        std::fclose(m_file);
    }
}

void CMPAFileStream::Init() {
    m_buffer = std::make_unique_for_overwrite<unsigned char[]>(INIT_BUFFERSIZE);
    m_bufferCapacity = INIT_BUFFERSIZE;
    m_bufferLength = 0;
    FillBuffer(m_bufferOffset, INIT_BUFFERSIZE, false);
}

long long CMPAFileStream::GetSize() const {
    const long long position = ftello(m_file);
    if (fseeko(m_file, 0, SEEK_END) != 0) {
        throw CMPAException(CMPAException::CantReadFromFile, GetFileName(), "GetFileSize", true);
    }
    const long long size = ftello(m_file);
    SetPosition(position);
    return size;
}

unsigned char* CMPAFileStream::ReadBytes(unsigned int size, long long& offset, bool moveOffset,
                                         bool reverse) const {
    if (!IsBuffered(offset, size) && !FillBuffer(offset, size, reverse)) {
        throw CMPAEndOfFileException(GetFileName());
    }
    unsigned char* bytes = m_buffer.get() + (offset - m_bufferOffset);
    if (moveOffset) {
        offset += size;
    }
    return bytes;
}

bool CMPAFileStream::IsBuffered(long long offset, unsigned int size) const {
    return m_bufferOffset <= offset && size <= m_bufferLength &&
           offset - m_bufferOffset <= m_bufferLength - size;
}

// Returns whether the buffer holds the bytes asked for now.
bool CMPAFileStream::FillBuffer(long long offset, unsigned int size, bool reverse) const {
    if (size > m_bufferCapacity && !GrowBuffer(offset, size)) {
        return false;
    }
    long long start = offset;
    if (reverse && offset >= 0) {
        // The bytes asked for lie at the end, those before them stay at hand.
        start = std::max(0LL, offset - (m_bufferCapacity - size));
    }
    m_bufferLength = 0;
    m_bufferLength = Read(m_buffer.get(), start, m_bufferCapacity);
    m_bufferOffset = start;
    return IsBuffered(offset, size);
}

// A size that comes from a damaged tag can be anything: only what the file can deliver is
// allocated.
bool CMPAFileStream::GrowBuffer(long long offset, unsigned int size) const {
    const long long fileSize = GetSize();
    if (fileSize < size || offset > fileSize - size) {
        return false;
    }
    m_bufferLength = 0;
    m_bufferCapacity = 0;
    m_buffer = std::make_unique_for_overwrite<unsigned char[]>(size);
    m_bufferCapacity = size;
    return true;
}

void CMPAFileStream::SetPosition(long long offset) const {
    if (fseeko(m_file, offset, SEEK_SET) != 0) {
        throw CMPAException(CMPAException::CantSetFilePosition, GetFileName(), "SetFilePointer",
                            true);
    }
}

unsigned int CMPAFileStream::Read(void* destination, long long offset, unsigned int size) const {
    SetPosition(offset);
    const std::size_t count = std::fread(destination, 1, size, m_file);
    if (count < size && std::feof(m_file) == 0) {
        throw CMPAException(CMPAException::CantReadFromFile, GetFileName(), "ReadFile", true);
    }
    return static_cast<unsigned int>(count);
}
