#pragma once

#include "adaptor/KlipraMac.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <atomic>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

/// Writes down what it is told, and lays the waveform out as a window does.
class RecordingDelegate : public KlipraMacDelegate {
public:
    KlipraMac* adaptor = nullptr;
    int visibleWidth = 0; ///< 0: there is no waveform

    void enableTimer() override { Record("enableTimer"); }
    void disableTimer() override { Record("disableTimer"); }
    void Zoom(int factor) override {
        Record("Zoom:" + std::to_string(factor));
        if (visibleWidth != 0) {
            adaptor->SetWaveSize(factor * visibleWidth);
            adaptor->CreateWaveImage();
        }
    }
    void enableZoomMenu() override { Record("enableZoomMenu"); }
    void EnableCutButton() override { Record("EnableCutButton"); }
    void EnablePlayStopButton(bool isPlaying) override {
        Record(isPlaying ? "playing" : "stopped");
    }
    void EnableSaveButton() override { Record("EnableSaveButton"); }
    void EnableSceneChangeMoveButton() override { Record("EnableSceneChangeMoveButton"); }
    void setNeedRefresh(int count) override {
        Record("setNeedRefresh:" + std::to_string(count));
        m_needRefresh = count;
        m_needRefresh.notify_all();
    }
    void refreshHistoryOutlineView(int id) override { Record("refresh:" + std::to_string(id)); }

    void AwaitScan() const { m_needRefresh.wait(KlipraMac::kRefreshWhileScanning); }

    /// The calls since the last time, separated by blanks.
    std::string TakeCalls() {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_calls, "");
    }

private:
    void Record(const std::string& call) {
        const std::lock_guard lock(m_mutex);
        m_calls += (m_calls.empty() ? "" : " ") + call;
    }

    std::mutex m_mutex;
    std::string m_calls;
    std::atomic<int> m_needRefresh{0};
};

/// An adaptor, soundless unless told, with its delegate, and a folder for the file that it has
/// opened.
struct OpenedFile {
    explicit OpenedFile(const std::string& bytes, int visibleWidth = 0,
                        FormatType format = FormatType::WAV,
                        KlipraMac::Sound sound = KlipraMac::Sound::Silent)
        : path(folder.Write("a song.wav", bytes)), adaptor(&delegate, format, path, sound) {
        delegate.adaptor = &adaptor;
        delegate.visibleWidth = visibleWidth;
        adaptor.SetDrawSize(visibleWidth);
        adaptor.PushHistory("# a song.wav", path, true, 0);
        adaptor.LoadPlayFile();
    }

    TemporaryFolder folder;
    std::string path;
    RecordingDelegate delegate;
    KlipraMac adaptor;
};

using Samples = std::vector<std::int16_t>;

/// A WAV file of 16-bit samples at 8000 sample frames a second.
inline std::string Wav(const Samples& samples, std::uint16_t channels = 1) {
    WavBuilder builder{.channels = channels, .rateHz = 8000};
    for (const std::int16_t sample : samples) {
        builder.samples += WavBuilder::Number(2, static_cast<std::uint16_t>(sample));
    }
    return builder.Bytes();
}

inline std::string SilentWav(int seconds) {
    return Wav(Samples(static_cast<std::size_t>(seconds) * 8000));
}
