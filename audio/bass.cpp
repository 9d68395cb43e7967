#include "audio/bass.h"

#include "audio/DecodingStream.h"
#include "audio/HandleTable.h"
#include "audio/OpenDecoder.h"
#include "audio/Output.h"
#include "audio/PeakIndexCache.h"
#include "audio/PlayingStream.h"

#include <atomic>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <exception>
#include <limits>
#include <memory>
#include <optional>
#include <system_error>
#include <utility>

namespace {

constexpr QWORD kNoBytes = std::numeric_limits<QWORD>::max();
constexpr double kNoSeconds = -1.0;

struct Library {
    HandleTable streams;
    Output output;
    std::atomic<HSYNC> lastSync{0};
};

/// Never destroyed: threads of streams that nobody freed may run until the process has ended.
Library& TheLibrary() {
    static auto* const library = new Library;
    return *library;
}

/// Runs a call. No exception (memory or threads running out) may leave through a C interface.
template <typename Result, typename Call>
Result Guarded(Result failure, const Call& call) noexcept {
    try {
        return call();
    } catch (const std::exception&) {
        return failure;
    }
}

/// Runs a call on a stream; an unknown handle fails.
template <typename Result, typename Call>
Result OnStream(DWORD handle, Result failure, const Call& call) noexcept {
    return Guarded(failure, [&] {
        const auto stream = TheLibrary().streams.Find(handle);
        return stream ? static_cast<Result>(call(*stream)) : failure;
    });
}

QWORD Bytes(const Stream& stream, std::int64_t sampleFrames) {
    return static_cast<QWORD>(sampleFrames) * stream.Format().SampleFrameBytes();
}

/// @return all bits set when the time is none, or too long for a byte count
QWORD SecondsToBytes(const Stream& stream, double seconds) {
    constexpr double kRounding = 1e-6;
    constexpr double kLimit = 1e15; // sample frames
    const double sampleFrames = std::floor(seconds * stream.Format().rateHz + kRounding);
    if (!(seconds >= 0) || sampleFrames > kLimit) {
        return kNoBytes;
    }
    return Bytes(stream, static_cast<std::int64_t>(sampleFrames));
}

BASS_READFAILURE ToFailure(QWORD position, const ReadError& cause) {
    return {position, static_cast<QWORD>(cause.offsetBytes), static_cast<DWORD>(cause.number)};
}

/// Why the thread's last stream could not be opened, if not for what its file holds.
thread_local std::optional<ReadError> openFailure;

/// @return 0 when the file cannot be opened, which openFailure then tells, or holds no audio
HSTREAM OpenStream(const char* path, bool decode) {
    const auto file = File::Open(path);
    if (!file) {
        openFailure = ReadError{0, errno};
        return 0;
    }
    auto decoder = OpenDecoder(file, decode ? DecodeThreads() : 1);
    if (!decoder) {
        if (const auto failure = file->Failures().First()) {
            openFailure = failure->cause;
        }
        return 0;
    }
    Library& library = TheLibrary();
    if (decode) {
        return library.streams.Add(std::make_shared<DecodingStream>(std::move(decoder), file));
    }
    return library.streams.Add(std::make_shared<PlayingStream>(std::move(decoder), library.output));
}

} // namespace

DWORD BASS_GetVersion() {
    return BASSVERSION << 16;
}

BOOL BASS_Init(int device, DWORD freq, DWORD flags, void* /*win*/, const void* /*clsid*/) {
    constexpr int kDefaultDevice = -1;
    constexpr DWORD kMaxRateHz = 384000;
    if (device != kDefaultDevice || flags != 0 || freq == 0 || freq > kMaxRateHz) {
        return FALSE;
    }
    return Guarded(FALSE, [&] { return BOOL{TheLibrary().output.Open({freq, 2})}; });
}

BOOL BASS_IsOutputAudible() {
    return Guarded(FALSE, [] { return BOOL{TheLibrary().output.IsAudible()}; });
}

BOOL BASS_Free() {
    return Guarded(FALSE, [] {
        Library& library = TheLibrary();
        if (!library.output.IsOpen()) {
            return FALSE;
        }
        for (const auto& stream : library.streams.RemoveAll()) {
            stream->Close();
        }
        library.output.Close();
        return TRUE;
    });
}

HSTREAM BASS_StreamCreateFile(BOOL mem, const void* file, QWORD offset, QWORD length, DWORD flags) {
    openFailure.reset();
    const bool decode = flags == BASS_STREAM_DECODE;
    if (mem != FALSE || file == nullptr || offset != 0 || length != 0 || !(decode || flags == 0)) {
        return 0;
    }
    try {
        return OpenStream(static_cast<const char*>(file), decode);
    } catch (const std::system_error& error) {
        openFailure = ReadError{0, error.code().value()};
    } catch (const std::exception&) {
        openFailure = ReadError{0, ENOMEM};
    }
    return 0;
}

BOOL BASS_GetOpenFailure(BASS_READFAILURE* failure) {
    if (failure == nullptr || !openFailure) {
        return FALSE;
    }
    *failure = ToFailure(0, *openFailure);
    return TRUE;
}

HMUSIC BASS_MusicLoad(BOOL /*mem*/, const void* /*file*/, QWORD /*offset*/, DWORD /*length*/,
                      DWORD /*flags*/, DWORD /*freq*/) {
    return 0;
}

BOOL BASS_StreamFree(HSTREAM handle) {
    return Guarded(FALSE, [&] {
        const auto stream = TheLibrary().streams.Remove(handle);
        if (!stream) {
            return FALSE;
        }
        stream->Close();
        return TRUE;
    });
}

BOOL BASS_ChannelPlay(DWORD handle, BOOL restart) {
    return OnStream(handle, FALSE, [&](Stream& stream) { return stream.Play(restart != FALSE); });
}

BOOL BASS_ChannelStop(DWORD handle) {
    return OnStream(handle, FALSE, [](Stream& stream) { return stream.Stop(); });
}

DWORD BASS_ChannelIsActive(DWORD handle) {
    return OnStream(handle, BASS_ACTIVE_STOPPED, [](Stream& stream) {
        return stream.IsActive() ? BASS_ACTIVE_PLAYING : BASS_ACTIVE_STOPPED;
    });
}

HSYNC BASS_ChannelSetSync(DWORD handle, DWORD type, QWORD /*param*/, SYNCPROC* proc, void* user) {
    if (type != BASS_SYNC_END || proc == nullptr) {
        return 0;
    }
    return OnStream(handle, HSYNC{0}, [&](Stream& stream) {
        const HSYNC sync = ++TheLibrary().lastSync;
        const bool added = stream.AddEndCallback([=] { proc(sync, handle, 0, user); });
        return added ? sync : 0;
    });
}

QWORD BASS_ChannelGetLength(DWORD handle, DWORD mode) {
    if (mode != BASS_POS_BYTE) {
        return kNoBytes;
    }
    return OnStream(handle, kNoBytes,
                    [](Stream& stream) { return Bytes(stream, stream.Format().sampleFrames); });
}

QWORD BASS_ChannelGetPosition(DWORD handle, DWORD mode) {
    if (mode != BASS_POS_BYTE) {
        return kNoBytes;
    }
    return OnStream(handle, kNoBytes,
                    [](Stream& stream) { return Bytes(stream, stream.Position()); });
}

BOOL BASS_ChannelSetPosition(DWORD handle, QWORD pos, DWORD mode) {
    return OnStream(handle, FALSE, [&](Stream& stream) {
        if (mode == BASS_POS_SCAN && pos == kNoBytes) {
            stream.CompleteLevels();
            return true;
        }
        return mode == BASS_POS_BYTE && pos <= Bytes(stream, stream.Format().sampleFrames) &&
               stream.SetPosition(
                   static_cast<std::int64_t>(pos / stream.Format().SampleFrameBytes()));
    });
}

double BASS_ChannelBytes2Seconds(DWORD handle, QWORD pos) {
    return OnStream(handle, kNoSeconds, [&](Stream& stream) {
        const AudioFormat& format = stream.Format();
        return static_cast<double>(pos) /
               (static_cast<double>(format.rateHz) * format.SampleFrameBytes());
    });
}

QWORD BASS_ChannelSeconds2Bytes(DWORD handle, double pos) {
    return OnStream(handle, kNoBytes, [&](Stream& stream) { return SecondsToBytes(stream, pos); });
}

BOOL BASS_ChannelGetLevelEx(DWORD handle, float* levels, float length, DWORD flags) {
    if (levels == nullptr || flags != BASS_LEVEL_STEREO || !(length > 0 && length <= 1)) {
        return FALSE;
    }
    return OnStream(handle, FALSE, [&](Stream& stream) {
        PeakLevels peaks;
        if (!stream.MeasureLevels(length, peaks)) {
            return false;
        }
        levels[0] = peaks.left;
        levels[1] = peaks.right;
        return true;
    });
}

QWORD BASS_ChannelGetLevelsKnown(DWORD handle) {
    return OnStream(handle, kNoBytes,
                    [](Stream& stream) { return Bytes(stream, stream.LevelsKnown()); });
}

void BASS_KeepLevels(BOOL keep) {
    PeakIndexCache::Shared().Enable(keep != FALSE);
}

BOOL BASS_ChannelGetReadFailure(DWORD handle, BASS_READFAILURE* failure) {
    return OnStream(handle, FALSE, [&](Stream& stream) {
        const auto first = stream.Failure();
        if (!first || failure == nullptr) {
            return false;
        }
        *failure = ToFailure(Bytes(stream, first->sampleFrame), first->cause);
        return true;
    });
}

DWORD BASS_ChannelGetAttributeEx(DWORD handle, DWORD attrib, void* value, DWORD size) {
    if (attrib != BASS_ATTRIB_SCANINFO) {
        return 0;
    }
    return OnStream(handle, DWORD{0}, [&](Stream& stream) {
        const auto info = stream.SeekInfo();
        const std::size_t bytes = info.size() * sizeof info[0];
        if (value != nullptr && size < bytes) {
            return DWORD{0};
        }
        if (value != nullptr && bytes != 0) {
            std::memcpy(value, info.data(), bytes);
        }
        return static_cast<DWORD>(bytes);
    });
}

BOOL BASS_ChannelSetAttributeEx(DWORD handle, DWORD attrib, void* value, DWORD size) {
    if (attrib != BASS_ATTRIB_SCANINFO || value == nullptr) {
        return FALSE;
    }
    return OnStream(handle, FALSE, [&](Stream& stream) {
        const auto info = stream.SeekInfo();
        return size != 0 && size == info.size() * sizeof info[0] &&
               std::memcmp(value, info.data(), size) == 0;
    });
}
