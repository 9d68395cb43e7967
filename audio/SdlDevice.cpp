#include "audio/SdlDevice.h"

#include <SDL.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <utility>

namespace {

/// SDL keeps some memory for each thread that deals with devices, and frees only that of its own
/// threads by itself.
void FreeSdlMemoryWithThisThread() {
    struct Memory {
        Memory() = default;
        ~Memory() { SDL_TLSCleanup(); }
        Memory(const Memory&) = delete;
        Memory& operator=(const Memory&) = delete;
    };
    thread_local const Memory memory;
    static_cast<void>(memory);
}

} // namespace

std::unique_ptr<SdlDevice> SdlDevice::Open(const OutputFormat& format) {
    FreeSdlMemoryWithThisThread();
    std::unique_ptr<SdlDevice> device(new SdlDevice(format));
    SDL_AudioSpec wanted{};
    wanted.freq = static_cast<int>(format.rateHz);
    wanted.format = AUDIO_S16SYS;
    wanted.channels = static_cast<Uint8>(format.channels);
    // About 40 ms: soon stopped, and long enough for a busy machine; half of it left gaps there.
    wanted.samples = static_cast<Uint16>(std::bit_ceil(std::clamp(format.rateHz / 25, 64U, 8192U)));
    wanted.callback = &SdlDevice::Callback;
    wanted.userdata = device.get();
    SDL_AudioSpec obtained{};
    device->m_device = SDL_OpenAudioDevice(nullptr, 0, &wanted, &obtained, 0);
    return device->m_device != 0 ? std::move(device) : nullptr;
}

SdlDevice::~SdlDevice() {
    FreeSdlMemoryWithThisThread();
    if (m_device != 0) {
        SDL_CloseAudioDevice(m_device);
    }
}

bool SdlDevice::IsAudible() const {
    return SDL_GetAudioDeviceStatus(m_device) != SDL_AUDIO_STOPPED;
}

void SdlDevice::Start(SampleSource& source) {
    SDL_LockAudioDevice(m_device);
    m_source = &source;
    SDL_UnlockAudioDevice(m_device);
    SDL_PauseAudioDevice(m_device, 0);
}

void SdlDevice::Stop() {
    SDL_PauseAudioDevice(m_device, 1);
    SDL_LockAudioDevice(m_device);
    m_source = nullptr;
    SDL_UnlockAudioDevice(m_device);
}

/// SDL holds the lock of the device meanwhile.
void SdlDevice::Callback(void* self, std::uint8_t* bytes, int count) {
    auto* device = static_cast<SdlDevice*>(self);
    if (device->m_source == nullptr) {
        std::memset(bytes, 0, static_cast<std::size_t>(count));
        return;
    }
    const std::int64_t sampleFrameBytes = device->m_format.channels * sizeof(std::int16_t);
    device->m_source->Fill(reinterpret_cast<std::int16_t*>(bytes), count / sampleFrameBytes);
}
