#include "audio/Output.h"

#include "audio/SdlDevice.h"
#include "audio/SilentDevice.h"

#define SDL_MAIN_HANDLED // SDL must not rename the program's main
#include <SDL.h>

#include <utility>

namespace {

bool InitialiseSdl() {
    SDL_SetMainReady();
    // Signals are the program's own business.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "Klipra");
    return SDL_InitSubSystem(SDL_INIT_AUDIO) == 0;
}

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

bool Output::Open(const OutputFormat& format) {
    FreeSdlMemoryWithThisThread();
    const std::lock_guard opening(m_opening);
    if (!m_sdl) {
        m_sdl = InitialiseSdl();
    }
    Keep(nullptr, true);
    std::unique_ptr<OutputDevice> device;
    if (m_sdl) {
        device = SdlDevice::Open(format);
    }
    const bool isAudible = device != nullptr;
    Keep(std::move(device), true);
    return isAudible;
}

bool Output::IsOpen() {
    const std::lock_guard lock(m_mutex);
    return m_open;
}

void Output::Close() {
    const std::lock_guard opening(m_opening);
    Keep(nullptr, false);
    if (m_sdl) {
        SDL_QuitSubSystem(SDL_INIT_AUDIO);
    }
    m_sdl = false;
}

bool Output::IsAudible() {
    const std::lock_guard lock(m_mutex);
    const OutputDevice* const device = m_lent != nullptr ? m_lent : m_kept.get();
    return device != nullptr && device->IsAudible();
}

std::unique_ptr<OutputDevice> Output::Acquire(const OutputFormat& format) {
    if (auto device = AcquireAudible(format)) {
        return device;
    }
    return Lend(std::make_unique<SilentDevice>(format));
}

std::unique_ptr<OutputDevice> Output::AcquireAudible(const OutputFormat& format) {
    FreeSdlMemoryWithThisThread();
    const std::lock_guard opening(m_opening);
    std::unique_ptr<OutputDevice> device;
    {
        const std::lock_guard lock(m_mutex);
        device = std::move(m_kept);
    }
    if (!device || device->Format() != format || !device->IsAudible()) {
        device.reset(); // before another one is opened: some systems have but one
        if (m_sdl) {
            device = SdlDevice::Open(format);
        }
    }
    return device ? Lend(std::move(device)) : nullptr;
}

void Output::Release(std::unique_ptr<OutputDevice> device) {
    FreeSdlMemoryWithThisThread();
    const std::lock_guard opening(m_opening);
    {
        const std::lock_guard lock(m_mutex);
        if (device.get() == m_lent) {
            m_lent = nullptr;
        }
        // Without a device to be heard the next stream tries anew: one may have been plugged in.
        if (m_open && device->IsAudible()) {
            m_kept.swap(device);
        }
    }
    device.reset();
}

std::unique_ptr<OutputDevice> Output::Lend(std::unique_ptr<OutputDevice> device) {
    const std::lock_guard lock(m_mutex);
    m_lent = device.get();
    return device;
}

/// Has the next stream get this device, closes the one kept until now.
void Output::Keep(std::unique_ptr<OutputDevice> device, bool open) {
    const std::lock_guard lock(m_mutex);
    m_open = open;
    m_kept.swap(device);
}
