#include "audio/SoundSystem.h"

#include <dlfcn.h>
#include <filesystem>

std::unique_ptr<SoundSystem> LoadSoundSystem() {
    // By its full path, so that no library of this name that lies elsewhere is taken for it.
    Dl_info self{};
    if (dladdr(reinterpret_cast<void*>(&LoadSoundSystem), &self) == 0) {
        return nullptr;
    }
    const auto path = std::filesystem::path(self.dli_fname).parent_path() / KLIPRA_SOUND_LIBRARY;
    void* const library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (library == nullptr) {
        return nullptr;
    }
    const auto open = reinterpret_cast<OpenSoundSystem*>(dlsym(library, kOpenSoundSystem));
    return std::unique_ptr<SoundSystem>(open != nullptr ? open() : nullptr);
}
