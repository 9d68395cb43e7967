#include "cli/WritePng.h"

#include "platform/RegularFile.h"
#include "platform/SystemError.h"

#include <png.h>

#include <cerrno>
#include <csetjmp>

namespace {

/// What libpng needs to write a file.
class PngWriter {
public:
    PngWriter()
        : m_png(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, Fail, IgnoreWarning)),
          m_info(m_png == nullptr ? nullptr : png_create_info_struct(m_png)) {}
    PngWriter(const PngWriter&) = delete;
    PngWriter& operator=(const PngWriter&) = delete;
    ~PngWriter() { png_destroy_write_struct(&m_png, &m_info); }

    /// @return false after a failure, with errno set where the system caused it
    bool Write(const WaveContext& image, std::FILE* file) {
        if (m_info == nullptr) {
            errno = ENOMEM;
            return false;
        }
        // A failure returns to here; what WriteRows holds needs no destruction.
        if (setjmp(png_jmpbuf(m_png)) != 0) { // NOLINT(cert-err52-cpp): a C library's exception
            return false;
        }
        WriteRows(image, file);
        return true;
    }

private:
    [[noreturn]] static void Fail(png_structp png, png_const_charp /*message*/) {
        png_longjmp(png, 1);
    }
    static void IgnoreWarning(png_structp /*png*/, png_const_charp /*message*/) {}

    void WriteRows(const WaveContext& image, std::FILE* file) {
        constexpr int kBits = 8;
        png_init_io(m_png, file);
        png_set_IHDR(m_png, m_info, static_cast<png_uint_32>(image.GetSize().width),
                     static_cast<png_uint_32>(image.GetSize().height), kBits, PNG_COLOR_TYPE_RGB,
                     PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        png_write_info(m_png, m_info);
        png_set_filler(m_png, 0, PNG_FILLER_AFTER); // leaves out the fourth byte of a pixel
        const auto* row = reinterpret_cast<png_const_bytep>(image.GetPixels());
        for (int y = 0; y < image.GetSize().height; ++y) {
            png_write_row(m_png, row);
            row += image.GetBytesPerRow();
        }
        png_write_end(m_png, m_info);
    }

    png_structp m_png;
    png_infop m_info;
};

} // namespace

std::error_code WritePng(const WaveContext& image, const std::string& path) {
    errno = 0;
    FilePointer file = OpenForWriting(path.c_str());
    if (file == nullptr || !PngWriter().Write(image, file.get()) ||
        std::fclose(file.release()) != 0) {
        return SystemError(errno == 0 ? EIO : errno);
    }
    return {};
}
