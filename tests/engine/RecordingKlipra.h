#pragma once

#include "engine/Klipra.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/WavBuilder.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <utility>

/// An engine whose hooks write down their calls; its files lie in a folder of its own.
class RecordingKlipra : public Klipra {
public:
    RecordingKlipra() { formatType = FormatType::WAV; }
    RecordingKlipra(const RecordingKlipra&) = delete;
    RecordingKlipra& operator=(const RecordingKlipra&) = delete;
    ~RecordingKlipra() override { CloseBASS(); }

    /// Writes a WAV file of 16-bit samples at 8000 sample frames a second, and opens it.
    void Open(const std::string& samples, std::uint16_t channelCount = 1) {
        const WavBuilder builder{.channels = channelCount,
                                 .rateHz = 8000,
                                 .bytesPerSecond = 16000 * channelCount,
                                 .blockAlign = static_cast<std::int16_t>(2 * channelCount),
                                 .samples = samples};
        Open("a b.wav", builder.Bytes());
    }

    void Open(const std::string& name, const std::string& bytes) {
        Klipra::PushHistory("# " + name, folder.Write(name, bytes), true, -1);
        LoadPlayFile();
        TakeCalls();
    }

    /// The calls since the last time, separated by blanks.
    std::string TakeCalls() {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_calls, "");
    }

    /// Waits until playback has ended so many times.
    /// @return false when it had not in time
    bool AwaitEnds(int count) {
        constexpr std::chrono::seconds kPatience(30);
        std::unique_lock lock(m_mutex);
        return m_ended.wait_for(lock, kPatience, [&] { return m_ends >= count; });
    }

    std::string PathOf(const std::string& suffix) const { return folder.Path(suffix + ".wav"); }

    TemporaryFolder folder;
    std::string outputPath; ///< the answer of the person who is asked for a file
    int failingCut = 0;     ///< the cut that fails; 1 is the next one

    void EnableTimer() override { Record("EnableTimer"); }
    void DisableTimer() override { Record("DisableTimer"); }
    bool CreateWaveImage() override { return Record("CreateWaveImage"); }
    void Zoom(int factor) override {
        zoom = factor;
        Record("Zoom:" + std::to_string(factor));
    }
    bool CutExec(bool keep, const std::string& source, const std::string& target,
                 unsigned long long start, unsigned long long end) override {
        Record("CutExec");
        return --failingCut != 0 && Klipra::CutExec(keep, source, target, start, end);
    }
    std::string GetCurrentHistoryItemName() override {
        Record("GetName");
        const std::string name = FindHistoryItem(currentHistoryId)->name;
        return name.substr(0, name.find(' '));
    }
    bool CopyFile(const std::string& from, const std::string& to) override {
        std::error_code error;
        return Record("CopyFile") && std::filesystem::copy_file(from, to, error);
    }
    void PushHistory(const std::string& name, const std::string& path, bool saved,
                     int parentId) override {
        Record("Push:" + name + ":" + std::to_string(parentId));
        Klipra::PushHistory(name, path, saved, parentId);
    }
    void DeleteAllChildren() override { Record("DeleteAllChildren"); }
    std::string MakeTargetPath(const std::string& suffix) override {
        Record("Target:" + suffix);
        return PathOf(suffix);
    }
    std::string QueryOutputPath() override {
        Record("Query");
        return outputPath;
    }
    void EnableZoomMenu() override { Record("EnableZoomMenu"); }
    void EnableCutButton() override { Record("EnableCutButton"); }
    void EnablePlayStopButton(bool isPlaying) override {
        playing = isPlaying;
        Record(isPlaying ? "Playing" : "Stopped");
        const std::lock_guard lock(m_mutex);
        m_ends += isPlaying ? 0 : 1;
        m_ended.notify_all();
    }
    void EnableSaveButton() override { Record("EnableSaveButton"); }
    void EnableSceneChangeMoveButton() override { Record("EnableSceneChangeMoveButton"); }
    void ErrorMsg(int code) override { Record("ErrorMsg:" + std::to_string(code)); }

private:
    bool Record(const std::string& call) {
        const std::lock_guard lock(m_mutex);
        m_calls += (m_calls.empty() ? "" : " ") + call;
        return true;
    }

    std::mutex m_mutex; // the end of playback comes on a thread of the library
    std::condition_variable m_ended;
    std::string m_calls;
    int m_ends = 0;
};
