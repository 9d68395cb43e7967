#pragma once

#include "adaptor/KlipraMac.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <atomic>
#include <functional>
#include <string>
#include <vector>

/// Keeps what threads have told it last, and lays the waveform out as a window does.
class RecordingDelegate : public KlipraMacDelegate {
public:
    KlipraMac* adaptor = nullptr;
    int visibleWidth = 0; ///< 0: there is no waveform

    void Zoom(int factor) override {
        if (visibleWidth != 0) {
            adaptor->SetWaveSize(factor * visibleWidth);
            adaptor->CreateWaveImage();
        }
    }
    void EnablePlayStopButton(bool isPlaying) override {
        m_isPlaying = isPlaying;
        m_isPlaying.notify_all();
    }
    void setNeedRefresh(int count) override {
        m_needRefresh = count;
        m_needRefresh.notify_all();
    }

    void AwaitWork(BackgroundWork& work) override {
        onWork(work);
        work.Wait();
    }

    void editsDoNotSurvive() override { ++timesTold; }
    int timesTold = 0; ///< that edits do not survive

    std::function<void(BackgroundWork&)> onWork = [](BackgroundWork&) {};

    void AwaitScan() const { m_needRefresh.wait(KlipraMac::kRefreshWhileScanning); }
    void AwaitStop() const { m_isPlaying.wait(true); }

private:
    std::atomic<bool> m_isPlaying{false};
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
        (void)adaptor.LoadPlayFile(); // what cannot be opened is shown to the delegate
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
