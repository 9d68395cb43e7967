#pragma once

#include "engine/Klipra.h"

#include <cstdint>
#include <string>

/// Tells why a file could not be loaded.
void ReportLoadFailure(const std::string& path);

/// Tells why the levels of a file that was loaded could not be read at all.
void ReportScanFailure(const std::string& path);

/// Tells what a stream of a file could not read, if there is something.
/// @return whether there is nothing
[[nodiscard]] bool ReportReadFailure(const std::string& path, std::uint32_t stream);

/// The engine without a window: opens one file to measure it. Failures are reported on standard
/// error. Makes no edits in the history.
class HeadlessKlipra : public Klipra {
public:
    /// Opens the only file of this engine.
    /// @return false after a failure, which has been reported
    [[nodiscard]] bool Open(const std::string& path);

    const std::string& Path() const { return histories.front().path; }

    /// A time as a position in the file, and a position as a time, in seconds.
    unsigned long long ToPosition(double seconds) const;
    double ToSeconds(unsigned long long position) const;
    double LengthInSeconds() const { return ToSeconds(length); }

    /// See above; of a stream of this engine's file.
    [[nodiscard]] bool ReportReadFailure(std::uint32_t stream) const {
        return ::ReportReadFailure(Path(), stream);
    }

    // There are no controls, and nobody to ask.
    void EnableTimer() override {}
    void DisableTimer() override {}
    bool CreateWaveImage() override { return false; }
    void Zoom(int factor) override { zoom = factor; }
    std::string GetCurrentHistoryItemName() override { return ""; }
    bool CopyFile(const std::string& /*from*/, const std::string& /*to*/) override { return false; }
    void DeleteAllChildren() override {}
    std::string MakeTargetPath(const std::string& /*suffix*/) override { return ""; }
    std::string QueryOutputPath() override { return ""; }
    void EnableZoomMenu() override {}
    void EnableCutButton() override {}
    void EnablePlayStopButton(bool isPlaying) override { playing = isPlaying; }
    void EnableSaveButton() override {}
    void EnableSceneChangeMoveButton() override {}
    void ErrorMsg(int code) override;
};
