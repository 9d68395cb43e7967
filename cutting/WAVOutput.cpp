#include "cutting/WAVOutput.h"

#include "cutting/CutError.h"
#include "cutting/CutWAV.h"
#include "cutting/CutWork.h"
#include "cutting/SourceWatch.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <new>

namespace {

constexpr std::size_t kBlockBytes = 4096;
constexpr std::size_t kBlocksAtOnce = 64; // fewer system calls; what gets copied is the same

// The source and the output.
std::FILE* ih = nullptr;
std::FILE* oh = nullptr;

// See OutputData.
long long CopyBlocks(long long offset, long long count, const ShowCopied& show) {
    const auto blocks = std::make_unique_for_overwrite<char[]>(kBlocksAtOnce * kBlockBytes);
    long long total = 0;
    while (count > 0) {
        const auto wanted =
            static_cast<std::size_t>(std::min<long long>(count, kBlocksAtOnce * kBlockBytes));
        const std::size_t arrived = std::fread(blocks.get(), 1, wanted, ih);
        const std::size_t whole = arrived < wanted ? arrived - arrived % kBlockBytes : arrived;
        if (std::fwrite(blocks.get(), 1, whole, oh) < whole) {
            break;
        }
        if (show) {
            show(offset + total, {blocks.get(), whole});
        }
        total += static_cast<long long>(whole);
        AddWork(static_cast<long long>(whole));
        if (whole < wanted) {
            break;
        }
        count -= static_cast<long long>(whole);
    }
    return total;
}

} // namespace

WAVOutput::WAVOutput(const std::string& path, const WAVSource& source)
    : m_file(path.c_str(), source.path), m_path(path) {
    if (!IsOpen()) {
        SetCutFailure(CutReason::OutputNotCreatable, path, errno);
    }
    ih = source.file;
    oh = m_file.GetHandle();
}

WAVOutput::~WAVOutput() {
    ih = nullptr;
    oh = nullptr;
}

long long WAVOutput::Copy(long long offset, long long count, const ShowCopied& show) {
    if (count <= 0 || fseeko(ih, offset, SEEK_SET) != 0) {
        return 0;
    }
    const long long copied = CopyBlocks(offset, count, show);
    const int error = errno;
    if (std::ferror(ih) != 0) {
        throw CutError{CutReason::SourceUnreadable, error};
    }
    if (std::ferror(oh) != 0) {
        throw CutError{CutReason::OutputNotWritable, error, m_path};
    }
    return copied;
}

void WAVOutput::Write(const std::string& bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), oh) != bytes.size()) {
        throw CutError{CutReason::OutputNotWritable, errno, m_path};
    }
}

void WAVOutput::WriteAt(long long offset, const std::string& bytes) {
    if (fseeko(oh, offset, SEEK_SET) != 0) {
        throw CutError{CutReason::OutputNotWritable, errno, m_path};
    }
    Write(bytes);
}

bool WAVOutput::Close(bool cutSucceeded) {
    oh = nullptr;
    return m_file.Close(cutSucceeded);
}

bool WithWAVSource(const char* path, const std::function<void(WAVSource&)>& write) {
    ResetCutFailure();
    const SourceWatch watch(path);
    const FilePointer file = OpenRegularFile(path);
    if (file == nullptr) {
        SetCutFailure(CutReason::SourceUnreadable, path, errno);
        return false;
    }
    WAVSource source{path, file.get()};
    try {
        write(source);
    } catch (const CutError& e) {
        SetCutFailure(e.reason, e.path.empty() ? path : e.path, e.errorNumber);
    } catch (const std::bad_alloc&) {
        SetCutFailure(CutReason::OutOfMemory, path);
    }
    if (watch.HasChanged()) {
        SetCutFailure(CutReason::SourceChanged, path);
    }
    if (CutFailure().reason != CutReason::None) {
        std::ranges::for_each(source.written, RemoveOutput);
    }
    return CutFailure().reason == CutReason::None;
}

void WriteWAV(WAVSource& source, const std::string& path,
              const std::function<void(WAVOutput&)>& write) {
    WAVOutput output(path, source);
    if (!output.IsOpen()) {
        throw CutError{CutReason::OutputNotCreatable}; // which has been told
    }
    write(output);
    if (!output.Close(true)) {
        throw CutError{CutReason::OutputNotWritable}; // which has been told
    }
    source.written.push_back(path);
}

long long OutputData(long long count) {
    return CopyBlocks(0, count, {});
}
