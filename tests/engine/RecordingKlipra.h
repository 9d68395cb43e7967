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
        Open("a b.wav",
             WavBuilder{.channels = channelCount, .rateHz = 8000, .samples = samples}.Bytes());
    }

    void Open(const std::string& name, const std::string& bytes) {
        Klipra::PushHistory("# " + name, folder.Write(name, bytes), true, -1);
        LoadPlayFile();
        TakeCalls();
    }

    /// The calls since the last time, separated by blanks. Waits for those that are told, but not
    /// for ever.
    std::string TakeCalls(const std::string& awaited = "") {
        constexpr std::chrono::seconds kPatience(30);
        std::unique_lock lock(m_mutex);
        m_called.wait_for(lock, kPatience, [&] { return awaited.empty() || m_calls == awaited; });
        return std::exchange(m_calls, "");
    }

    TemporaryFolder folder;
    std::string outputPath; ///< the answer of the person who is asked for a file

    void EnableTimer() override { Record("EnableTimer"); }
    void DisableTimer() override { Record("DisableTimer"); }
    bool CreateWaveImage() override { return Record("CreateWaveImage", true); }
    void Zoom(int factor) override { zoom = Record("Zoom:" + std::to_string(factor), factor); }
    bool CutExec(bool keep, const std::string& source, const std::string& target,
                 unsigned long long start, unsigned long long end) override {
        Record("CutExec");
        return Klipra::CutExec(keep, source, target, start, end);
    }
    std::string GetCurrentHistoryItemName() override {
        const std::string& name = FindHistoryItem(currentHistoryId)->name;
        return Record("GetName", name.substr(0, name.find(' ')));
    }
    bool CopyFile(const std::string& from, const std::string& to) override {
        std::error_code error;
        return Record("CopyFile", std::filesystem::copy_file(from, to, error));
    }
    void PushHistory(const std::string& name, const std::string& path, bool saved,
                     int parentId) override {
        Record("Push:" + name + ":" + std::to_string(parentId));
        Klipra::PushHistory(name, path, saved, parentId);
    }
    void DeleteAllChildren() override { Record("DeleteAllChildren"); }
    std::string MakeTargetPath(const std::string& suffix) override {
        return Record("Target:" + suffix, folder.Path(suffix + ".wav"));
    }
    std::string QueryOutputPath() override { return Record("Query", outputPath); }
    void EnableZoomMenu() override { Record("EnableZoomMenu"); }
    void EnableCutButton() override { Record("EnableCutButton"); }
    void EnablePlayStopButton(bool isPlaying) override {
        playing = isPlaying;
        Record(isPlaying ? "Playing" : "Stopped");
    }
    void EnableSaveButton() override { Record("EnableSaveButton"); }
    void EnableSceneChangeMoveButton() override { Record("EnableSceneChangeMoveButton"); }
    void ErrorMsg(int code) override { Record("ErrorMsg:" + std::to_string(code)); }

private:
    template <typename Result = bool>
    Result Record(const std::string& call, Result result = {}) {
        const std::lock_guard lock(m_mutex);
        m_calls += (m_calls.empty() ? "" : " ") + call;
        m_called.notify_all();
        return result;
    }

    std::mutex m_mutex; // the end of playback comes on a thread of the library
    std::condition_variable m_called;
    std::string m_calls;
};
