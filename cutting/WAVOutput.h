#pragma once

#include "cutting/OutputFile.h"

#include <cstdio>
#include <functional>
#include <span>
#include <string>
#include <vector>

struct WAVSource;

/// Takes bytes that were copied, and where they stand in the source.
using ShowCopied = std::function<void(long long offset, std::span<const char> bytes)>;

/// The file that a WAV cut writes. One at a time. All that write throw CutError when that fails,
/// when the source cannot be read, or when the cut has been cancelled.
class WAVOutput {
public:
    /// Creates the file; CutFailure tells where that fails.
    WAVOutput(const std::string& path, const WAVSource& source);
    WAVOutput(const WAVOutput&) = delete;
    WAVOutput& operator=(const WAVOutput&) = delete;
    ~WAVOutput();

    const std::string& GetPath() const { return m_path; }

    bool IsOpen() const { return m_file.GetHandle() != nullptr; }

    /// Copies bytes of the source as OutputData does. Returns how many.
    /// @param show  is shown them
    long long Copy(long long offset, long long count, const ShowCopied& show = {});

    /// Writes bytes of our own where the output stands.
    void Write(const std::string& bytes);

    /// Writes them over others.
    void WriteAt(long long offset, const std::string& bytes);

    /// See OutputFile::Close.
    bool Close(bool cutSucceeded);

private:
    OutputFile m_file;
    std::string m_path;
};

/// The source of a WAV cut, open, and the outputs that are complete.
struct WAVSource {
    const char* path;
    std::FILE* file;
    std::vector<std::string> written{};
};

/// Opens the source and has something written from it. Whatever is thrown then ends in CutFailure,
/// and all outputs are deleted.
/// @return whether nothing was thrown, and the source is still what it was
[[nodiscard]] bool WithWAVSource(const char* path, const std::function<void(WAVSource&)>& write);

/// Creates an output, has it written, and closes it. Throws CutError.
void WriteWAV(WAVSource& source, const std::string& path,
              const std::function<void(WAVOutput&)>& write);
