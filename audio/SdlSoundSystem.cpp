#include "audio/SdlDevice.h"
#include "audio/SoundSystem.h"

#define SDL_MAIN_HANDLED // SDL must not rename the program's main
#include <SDL.h>

#include <memory>
#include <new>

namespace {

/// SDL's audio, as long as this lives.
class SdlSoundSystem : public SoundSystem {
public:
    SdlSoundSystem() = default;
    ~SdlSoundSystem() override { SDL_QuitSubSystem(SDL_INIT_AUDIO); }
    SdlSoundSystem(const SdlSoundSystem&) = delete;
    SdlSoundSystem& operator=(const SdlSoundSystem&) = delete;

    std::unique_ptr<OutputDevice> OpenDevice(const OutputFormat& format) override {
        return SdlDevice::Open(format);
    }
};

} // namespace

extern "C" __attribute__((visibility("default"))) SoundSystem* KlipraOpenSoundSystem();

SoundSystem* KlipraOpenSoundSystem() {
    SDL_SetMainReady();
    // Signals are the program's own business.
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "Klipra");
    return SDL_InitSubSystem(SDL_INIT_AUDIO) == 0 ? new (std::nothrow) SdlSoundSystem : nullptr;
}
