#include "audio/Output.h"

#include "audio/SilentDevice.h"

#include <utility>

bool Output::Open(const OutputFormat& format) {
    const std::lock_guard opening(m_opening);
    if (!m_system) {
        m_system = LoadSoundSystem();
    }
    Keep(nullptr, true);
    std::unique_ptr<OutputDevice> device;
    if (m_system) {
        device = m_system->OpenDevice(format);
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
    m_system.reset();
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
    const std::lock_guard opening(m_opening);
    std::unique_ptr<OutputDevice> device;
    {
        const std::lock_guard lock(m_mutex);
        device = std::move(m_kept);
    }
    if (!device || device->Format() != format || !device->IsAudible()) {
        device.reset(); // before another one is opened: some systems have but one
        if (m_system) {
            device = m_system->OpenDevice(format);
        }
    }
    return device ? Lend(std::move(device)) : nullptr;
}

void Output::Release(std::unique_ptr<OutputDevice> device) {
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
