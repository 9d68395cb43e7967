#include "cli/SourceFile.h"

#include "cli/Arguments.h"
#include "cli/Report.h"
#include "engine/Format.h"
#include "places/PrintableText.h"
#include "platform/RegularFile.h"
#include "platform/SystemError.h"

#include <array>
#include <cerrno>
#include <string_view>

namespace {

/// Reads a few bytes of a file here and there.
class Peeker {
public:
    explicit Peeker(std::FILE* file) : m_file(file) {}

    /// As many bytes from an offset as there are, at most so many.
    std::string At(long long offset, std::size_t most) const {
        std::string bytes(most, '\0');
        const bool isThere = fseeko(m_file, offset, SEEK_SET) == 0;
        bytes.resize(isThere ? std::fread(bytes.data(), 1, most, m_file) : 0);
        return bytes;
    }

private:
    std::FILE* m_file;
};

unsigned int Byte(const std::string& bytes, std::size_t i) {
    return static_cast<unsigned char>(bytes[i]);
}

// Behind the ID3v2 tags that a file begins with (ID3 tag version 2.4.0, section 3.1).
long long BehindTags(const Peeker& file) {
    constexpr std::size_t kHeaderSize = 10;
    constexpr int kMostTags = 100;
    long long offset = 0;
    for (int i = 0; i < kMostTags; ++i) {
        const std::string header = file.At(offset, kHeaderSize);
        if (header.size() < kHeaderSize || !header.starts_with("ID3")) {
            break;
        }
        long long size = 0;
        for (std::size_t digit = 6; digit < kHeaderSize; ++digit) {
            size = size << 7 | (Byte(header, digit) & 0x7FU);
        }
        constexpr unsigned int kHasFooter = 0x10;
        offset += size + static_cast<long long>(
                             (Byte(header, 5) & kHasFooter) != 0 ? 2 * kHeaderSize : kHeaderSize);
    }
    return offset;
}

// The size of the ADTS frame (ISO/IEC 13818-7, 6.2) whose header these bytes are; 0 for others.
long long AdtsFrameSize(const std::string& header) {
    constexpr std::size_t kHeaderSize = 7;
    if (header.size() < kHeaderSize || Byte(header, 0) != 0xFF ||
        (Byte(header, 1) & 0xF6U) != 0xF0) {
        return 0;
    }
    const unsigned int size =
        (Byte(header, 3) & 3U) << 11U | Byte(header, 4) << 3U | Byte(header, 5) >> 5U;
    constexpr unsigned int kLeastInvalidRate = 13;
    const unsigned int rate = Byte(header, 2) >> 2U & 0xFU;
    return size >= kHeaderSize && rate < kLeastInvalidRate ? size : 0;
}

// A header may be four bytes of anything: only the second one makes it certain.
bool IsAdts(const Peeker& file, long long offset) {
    const long long size = AdtsFrameSize(file.At(offset, 7));
    return size != 0 && AdtsFrameSize(file.At(offset + size, 7)) != 0;
}

bool IsMpegAudio(const std::string& bytes) {
    return bytes.size() >= 2 && Byte(bytes, 0) == 0xFF && (Byte(bytes, 1) & 0xE0U) == 0xE0 &&
           (Byte(bytes, 1) & 0x06U) != 0;
}

/// What a file begins with, and what that is a sign of.
struct Sign {
    std::size_t offset;
    std::string_view bytes;
    const char* name;
};

constexpr Sign kSigns[] = {
    {8, "WAVE", "WAV"}, // behind RIFF and a size, or RF64
    {0, "RIFF", "another kind of RIFF"},
    {0, "RIFX", "a WAV with its bytes in reverse"},
    {0, "OggS", "Ogg"},
    {0, "fLaC", "FLAC"},
    {0, "FORM", "AIFF"},
    {4, "ftyp", "MP4"},
    {0, "\x30\x26\xB2\x75\x8E\x66\xCF\x11", "WMA"},
    {0, "\x1A\x45\xDF\xA3", "Matroska"},
    {0, "MThd", "MIDI"},
    {0, ".snd", "AU"},
    {0, "caff", "CAF"},
};

const char* FindSign(const std::string& bytes) {
    for (const Sign& sign : kSigns) {
        if (bytes.size() >= sign.offset &&
            bytes.compare(sign.offset, sign.bytes.size(), sign.bytes) == 0) {
            return sign.name;
        }
    }
    return nullptr;
}

bool IsWav(const std::string& bytes) {
    return bytes.starts_with("RIFF") || bytes.starts_with("RF64") || bytes.starts_with("BW64");
}

// What the content looks like when that is plainly not the format; null otherwise.
const char* OtherFormat(const Peeker& file, FormatType format) {
    constexpr std::size_t kSignSize = 12;
    const long long begin = BehindTags(file);
    const std::string bytes = file.At(begin, kSignSize);
    const char* const sign = FindSign(bytes);
    if (format == FormatType::MP3) {
        return sign == nullptr && IsAdts(file, begin) ? "AAC (ADTS)" : sign;
    }
    if (IsWav(file.At(0, 4))) {
        return nullptr;
    }
    if (sign != nullptr && begin == 0) {
        return sign;
    }
    if (IsAdts(file, begin)) {
        return "AAC (ADTS)";
    }
    return begin > 0 || IsMpegAudio(bytes) ? "MP3" : "no audio that is known";
}

} // namespace

std::optional<FormatType> SourceFormat(const std::string& path) {
    const std::optional<FormatType> format = GetFormat(path);
    if (!format) {
        ReportError(path, kUnknownFormat);
        return std::nullopt;
    }
    const FilePointer file = OpenRegularFile(path.c_str());
    if (file == nullptr) {
        ReportError(path, SystemErrorText(errno));
        return std::nullopt;
    }
    errno = 0;
    const char* const other = OtherFormat(Peeker(file.get()), *format);
    if (std::ferror(file.get()) != 0) {
        ReportError(path, "cannot be read: " + SystemErrorText(errno));
        return std::nullopt;
    }
    if (other != nullptr) {
        const char* const expected = FindFormat(*format)->description;
        ReportError(path, std::string("is not ") + expected + " file: it looks like " + other);
        return std::nullopt;
    }
    return format;
}

void CheckOutputExtension(const std::string& output, FormatType format) {
    if (GetFormat(output) != format) {
        throw UsageError(Quoted(output) + " needs the extension of the source, ." +
                         FindFormat(format)->extension);
    }
}
