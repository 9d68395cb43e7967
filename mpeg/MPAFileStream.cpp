#include "mpeg/MPAFileStream.h"

#include "mpeg/MPAEndOfFileException.h"

#include <algorithm>

namespace {

// What is read beyond the first look at a file is a walk over it: in large pieces, each of which
// keeps the last bytes of the one before, for a walk looks at the header that follows a frame
// before it copies the frame.
constexpr unsigned int kWindowBytes = 128 * 1024;
constexpr unsigned int kKeptBytes = 4 * 1024;

} // namespace

CMPAFileStream::CMPAFileStream(const char* fileName)
    : CMPAStream(fileName), m_ownedFile(OpenRegularFile(fileName)), m_file(m_ownedFile.get()) {
    if (m_file == nullptr) {
        throw CMPAException(CMPAException::CantOpenFile, fileName, "CreateFile", true);
    }
    // The C library's own buffer would be a second one, and costs a system call for each seek.
    static_cast<void>(std::setvbuf(m_file, nullptr, _IONBF, 0));
    Init();
}

CMPAFileStream::CMPAFileStream(const char* fileName, std::FILE* file)
    : CMPAStream(fileName), m_file(file) {
    Init();
}

void CMPAFileStream::Init() {
    m_buffer = std::make_unique_for_overwrite<unsigned char[]>(INIT_BUFFERSIZE);
    m_bufferCapacity = INIT_BUFFERSIZE;
    m_bufferLength = 0;
    m_bufferLength = Read(m_buffer.get(), m_bufferOffset, INIT_BUFFERSIZE);
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
    if (!GrowBuffer(offset, size)) {
        return false;
    }
    // With reverse the bytes asked for lie at the end, and those before them are at hand next.
    const unsigned int spare = m_bufferCapacity - size;
    const unsigned int before = reverse ? spare : std::min(spare, kKeptBytes);
    const long long start = offset < 0 ? offset : std::max(0LL, offset - before);
    m_bufferLength = 0;
    m_bufferLength = Read(m_buffer.get(), start, m_bufferCapacity);
    m_bufferOffset = start;
    return IsBuffered(offset, size);
}

// Returns false when the file is too short to fill so many bytes: the size may come from a damaged
// tag, and only what the file can deliver is allocated.
bool CMPAFileStream::GrowBuffer(long long offset, unsigned int size) const {
    const unsigned int capacity = std::max(size, kWindowBytes);
    if (capacity <= m_bufferCapacity) {
        return true;
    }
    if (size > kWindowBytes) {
        const long long fileSize = GetSize();
        if (fileSize < size || offset > fileSize - size) {
            return false;
        }
    }
    m_bufferLength = 0;
    m_bufferCapacity = 0;
    m_buffer = std::make_unique_for_overwrite<unsigned char[]>(capacity);
    m_bufferCapacity = capacity;
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
