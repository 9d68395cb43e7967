#include "cli/HeadlessKlipra.h"

#include "audio/bass.h"
#include "cli/Progress.h"
#include "cli/Report.h"
#include "cli/SourceFile.h"
#include "places/PrintableText.h"
#include "places/TextLines.h"
#include "platform/SystemError.h"

namespace {

// Why this thread's last attempt to open a file failed, unless it is for what the file holds.
void ReportOpenFailure(const std::string& path, const char* otherwise) {
    BASS_READFAILURE failure{};
    const bool isKnown = BASS_GetOpenFailure(&failure) != FALSE;
    ReportError(path, isKnown ? SystemErrorText(static_cast<int>(failure.error)) : otherwise);
}

} // namespace

void ReportLoadFailure(const std::string& path) {
    ReportOpenFailure(path, "holds no audio to decode");
}

void ReportScanFailure(const std::string& path) {
    ReportOpenFailure(path, "cannot be measured: the system has no more threads");
}

bool ReportReadFailure(const std::string& path, std::uint32_t stream) {
    BASS_READFAILURE failure{};
    if (BASS_ChannelGetReadFailure(stream, &failure) == FALSE) {
        return true;
    }
    const std::string reason = failure.error == 0
                                   ? "it became shorter while it was read"
                                   : SystemErrorText(static_cast<int>(failure.error));
    ReportError(path, "cannot be read from " +
                          SecondsText(BASS_ChannelBytes2Seconds(stream, failure.position)) +
                          " s on (byte " + std::to_string(failure.fileOffset) + "): " + reason);
    return false;
}

bool HeadlessKlipra::Open(const std::string& path) {
    const std::optional<FormatType> format = SourceFormat(path);
    if (!format) {
        return false;
    }
    const Progress progress([&] { return "Reading " + Printable(path); });
    formatType = *format;
    PushHistory("# " + ExtractFilename(path), path, true, currentHistoryId);
    return LoadPlayFile() && ReportReadFailure(channel);
}

unsigned long long HeadlessKlipra::ToPosition(double seconds) const {
    return BASS_ChannelSeconds2Bytes(channel, seconds);
}

double HeadlessKlipra::ToSeconds(unsigned long long position) const {
    return BASS_ChannelBytes2Seconds(channel, position);
}

void HeadlessKlipra::ErrorMsg(int /*code*/) {
    ReportLoadFailure(histories.front().path); // the only failure there can be
}
