#include "adaptor/KlipraMac.h"

#include "adaptor/CopyFileReplacing.h"
#include "adaptor/HeldAlerts.h"
#include "adaptor/Session.h"
#include "audio/bass.h"
#include "engine/Format.h"
#include "platform/Desktop.h"

#include <filesystem>
#include <unistd.h>

KlipraMac::KlipraMac(KlipraMacDelegate* delegate, FormatType format, const std::string& path,
                     Sound sound)
    : appDelegate(delegate), filePath(path), m_temporaryFiles("/tmp", getpid()) {
    formatType = format;
    if (sound == Sound::Audible) {
        OpenBASS(nullptr);
    }
}

KlipraMac::~KlipraMac() {
    m_scan.Stop();
    DeleteTempraryFiles();
    CloseBASS(); // here, as the end of playback calls a hook of this class
}

bool KlipraMac::DeleteTempraryFiles() const {
    m_temporaryFiles.DeleteAll();
    return true;
}

std::string KlipraMac::MakeTargetPath(const std::string& suffix) {
    return m_temporaryFiles.MakePath(suffix, GetExtension());
}

const char* KlipraMac::GetExtension() const {
    const Format* const format = FindFormat(formatType);
    return format == nullptr ? "wav" : format->extension;
}

std::string KlipraMac::QueryOutputPath() {
    const std::string folder = std::filesystem::path(filePath).parent_path().string();
    return AskOutputPath(folder.empty() ? "." : folder, ProposeOutputName(folder), GetExtension());
}

std::string KlipraMac::ProposeOutputName(const std::string& folder) {
    namespace fs = std::filesystem;
    constexpr std::size_t kLongestLabel = 40; // a person reads no more, and a name has an end
    constexpr int kAttempts = 1000;
    std::string base = fs::path(filePath).stem().string();
    const std::string label = GetCurrentHistoryItemName();
    if (!label.empty() && label.size() <= kLongestLabel) {
        base += label.substr(1); // without the #
    }
    const std::string extension = std::string(".") + GetExtension();
    std::string name = base + extension;
    std::error_code error;
    for (int number = 2; number < kAttempts && fs::exists(fs::path(folder) / name, error);
         ++number) {
        name = base;
        name.append(" (").append(std::to_string(number)).append(")").append(extension);
    }
    return name;
}

bool KlipraMac::DoWork(const std::function<bool()>& work) {
    HeldAlerts alerts;
    bool succeeded = false;
    {
        BackgroundWork background([&] {
            Desktop* const before = InstallThreadDesktop(&alerts);
            succeeded = work();
            InstallThreadDesktop(before);
        });
        appDelegate->AwaitWork(background);
    }
    alerts.Show();
    return succeeded;
}

bool KlipraMac::CutExec(bool keep, const std::string& source, const std::string& target,
                        unsigned long long start, unsigned long long end) {
    return DoWork([&] { return Klipra::CutExec(keep, source, target, start, end); });
}

bool KlipraMac::FinishExec(const EditedAudio& audio, const std::string& target) {
    return DoWork([&] { return Klipra::FinishExec(audio, target); });
}

bool KlipraMac::CopyFile(const std::string& from, const std::string& to) {
    return DoWork([&] {
        const bool isCopied = CopyFileReplacing(from, to);
        m_lastFailure = {CutFailure()};
        return isCopied;
    });
}

void KlipraMac::EnableSaveButton() {
    DeleteDroppedFiles(); // an edit or a selection is complete, its entry loaded
    if (!m_isJournalCurrent) {
        WriteJournal();
    }
    appDelegate->EnableSaveButton();
}

void KlipraMac::ErrorMsg(int code) {
    switch (code) {
    case kErrorLoad:
        DropWaveImage(); // the one that is there shows another entry
        ShowErrorMsg("コンテンツのロードに失敗しました。");
        break;
    case kErrorSave:
        ShowErrorMsg("保存できませんでした。");
        break;
    default:
        ShowErrorMsg("不明なエラー");
        break;
    }
}

void KlipraMac::Zoom(int factor) {
    zoom = factor;
    appDelegate->Zoom(factor);
}

void KlipraMac::EnablePlayStopButton(bool isPlaying) {
    playing = isPlaying;
    appDelegate->EnablePlayStopButton(isPlaying);
}

bool KlipraMac::HasOutput() {
    return BASS_IsOutputAudible() != FALSE;
}

int KlipraMac::GetDefinedCutPositionCount() const {
    const bool hasStart = cutPositions.start != kUnsetPosition;
    const bool hasEnd = cutPositions.end != kUnsetPosition;
    const bool isSame = cutPositions.start == cutPositions.end;
    return hasStart && hasEnd && !isSame ? 2 : hasStart || hasEnd ? 1 : 0;
}
