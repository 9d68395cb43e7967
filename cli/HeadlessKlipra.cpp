#include "cli/HeadlessKlipra.h"

#include "audio/bass.h"
#include "cli/Progress.h"
#include "cli/Report.h"
#include "engine/FormatType.h"
#include "platform/RegularFile.h"
#include "platform/SystemError.h"

#include <cerrno>

void ReportLoadFailure(const std::string& path) {
    const bool isReadable = OpenRegularFile(path.c_str()) != nullptr;
    ReportError(path, isReadable ? "holds no audio to decode" : SystemErrorText(errno));
}

bool HeadlessKlipra::Open(const std::string& path) {
    const std::optional<FormatType> format = GetFormat(path);
    if (!format) {
        ReportError(path, kUnknownFormat);
        return false;
    }
    const Progress progress([&] { return "Reading " + path; });
    formatType = *format;
    PushHistory("# " + ExtractFilename(path), path, true, currentHistoryId);
    return LoadPlayFile();
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
