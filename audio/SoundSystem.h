#pragma once

#include "audio/OutputDevice.h"

#include <memory>

/// The system's audio, ready to open devices. One thread at a time.
///
/// It lives in a library of its own, which is loaded when somebody wants to hear something: what
/// only decodes has no sound or window system loaded with it.
class SoundSystem {
public:
    virtual ~SoundSystem() = default;

    /// A stopped device, the system's default one.
    /// @return null when there is none or it cannot be opened
    [[nodiscard]] virtual std::unique_ptr<OutputDevice> OpenDevice(const OutputFormat& format) = 0;
};

/// What that library exports: the system's audio, to be deleted by the caller, or null where there
/// is none.
using OpenSoundSystem = SoundSystem*();
inline constexpr const char* kOpenSoundSystem = "KlipraOpenSoundSystem";

/// Loads the library, which stays loaded, from beside the one that this is linked into.
/// @return null when there is no such library, or no audio
[[nodiscard]] std::unique_ptr<SoundSystem> LoadSoundSystem();
