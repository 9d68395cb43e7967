#pragma once

#include "audio/OutputDevice.h"
#include "audio/SoundSystem.h"

#include <memory>
#include <mutex>

/// Where streams get their device from.
///
/// Keeps an audible device that is no longer used for the next stream of the same format: opening
/// one takes longer than a person likes to wait for a sound. Any thread.
class Output {
public:
    /// Gets ready to open devices and tries one in this format.
    /// @return false when there is none: Acquire then gives silent ones
    [[nodiscard]] bool Open(const OutputFormat& format);

    /// Open was called, successful or not, and Close was not called since.
    bool IsOpen();

    /// Drops the kept device and lets go of the system's audio.
    void Close();

    /// Whether the device that was acquired last, or the kept one, can be heard.
    bool IsAudible();

    /// A stopped device; a silent one where no other can be had.
    /// @throws std::system_error when not even that can be made
    [[nodiscard]] std::unique_ptr<OutputDevice> Acquire(const OutputFormat& format);

    /// A stopped device that can be heard, in place of one that cannot; what is put in its place is
    /// to be given back with Release.
    /// @return null when there is still none
    [[nodiscard]] std::unique_ptr<OutputDevice> AcquireAudible(const OutputFormat& format);

    /// Gives a stopped device back.
    void Release(std::unique_ptr<OutputDevice> device);

private:
    void Keep(std::unique_ptr<OutputDevice> device, bool open);
    [[nodiscard]] std::unique_ptr<OutputDevice> Lend(std::unique_ptr<OutputDevice> device);

    // Held while a device is opened or closed, which takes its time; taken before the other mutex.
    std::mutex m_opening;
    std::unique_ptr<SoundSystem> m_system; // once it was opened

    // under the mutex
    std::mutex m_mutex;
    bool m_open = false;
    std::unique_ptr<OutputDevice> m_kept;
    const OutputDevice* m_lent = nullptr; // the last one acquired, until it is given back
};
