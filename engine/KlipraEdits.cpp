#include "audio/bass.h"
#include "engine/Format.h"
#include "engine/Klipra.h"
#include "platform/FileReplacement.h"

#include <algorithm>
#include <filesystem>

namespace {

// By path as well: a file that has gone away must not come back as something else.
bool IsSameFile(const std::string& a, const std::string& b) {
    std::error_code error;
    return a == b || std::filesystem::equivalent(a, b, error);
}

// What tells the temporary file of an entry from those of the others: its name without "#-".
std::string Suffix(const std::string& name) {
    return name.substr(2);
}

// The part of a path behind the last such character; all of it where there is none.
std::string After(const std::string& path, char separator) {
    const std::size_t found = path.rfind(separator);
    return found == std::string::npos ? path : path.substr(found + 1);
}

} // namespace

bool Klipra::CutExec(bool keep, const std::string& source, const std::string& target,
                     unsigned long long start, unsigned long long end) {
    const bool isOpenedFile = !histories.empty() && IsSameFile(target, histories.front().path);
    if (isOpenedFile || IsSameFile(target, source)) {
        return false;
    }
    FileReplacement replacement(target, source);
    return !replacement.GetPath().empty() &&
           CutToFile(keep, source, replacement.GetPath(), start, end) && replacement.Commit();
}

bool Klipra::CutToFile(bool keep, const std::string& source, const std::string& output,
                       unsigned long long start, unsigned long long end) const {
    const auto [lo, hi] = std::minmax(
        {BASS_ChannelBytes2Seconds(channel, start), BASS_ChannelBytes2Seconds(channel, end)});
    if (lo < 0.0) {
        return false; // there is no stream to convert with
    }
    const Format* const format = FindFormat(formatType);
    return format != nullptr && format->cut(source.c_str(), output.c_str(), lo, hi, keep);
}

bool Klipra::IsUsedByHistory(const std::string& path) const {
    return std::any_of(histories.begin(), histories.end(),
                       [&](const HistoryItem& item) { return IsSameFile(path, item.path); });
}

void Klipra::FinishEdit() {
    EnableTimer();
    EnableCutButton();
    EnableSaveButton();
    EnableSceneChangeMoveButton();
}

bool Klipra::Cut(bool keep) {
    const HistoryItem* const item = FindCurrentHistoryItem();
    if (item == nullptr) {
        return false;
    }
    const int parentId = item->id;
    const std::string name = GetCurrentHistoryItemName() + "-1";
    const std::string target = MakeTargetPath(Suffix(name));
    if (!HasRange() || !CutExec(keep, item->path, target, cutPositions.start, cutPositions.end)) {
        ErrorMsg(kErrorSave);
        return false;
    }
    const unsigned long long start = cutPositions.start;
    UpdateCurrentHistory();
    DeleteAllChildren();
    PushHistory(name, target, false, parentId);
    const bool isLoaded = LoadPlayFile();
    sceneChangePositions.clear();
    if (isLoaded && !keep) {
        SetCurrentPosition(start);
    }
    FinishEdit();
    return true;
}

std::vector<unsigned long long> Klipra::SplitPoints() const {
    std::vector<unsigned long long> points = {0};
    for (const unsigned long long position : {cutPositions.start, cutPositions.end}) {
        if (position != 0 && position < lastPosition) {
            points.push_back(position);
        }
    }
    std::sort(points.begin(), points.end());
    return points;
}

bool Klipra::Split() {
    const HistoryItem* const item = FindCurrentHistoryItem();
    const std::vector<unsigned long long> points = SplitPoints();
    if (item == nullptr || points.size() < 2) {
        return false;
    }
    const int parentId = item->id;
    const std::string source = item->path;
    const std::string base = GetCurrentHistoryItemName() + "-";
    DeleteAllChildren();
    for (std::size_t i = 0; i < points.size(); ++i) {
        const std::string name = base + std::to_string(i + 1);
        const std::string target = MakeTargetPath(Suffix(name));
        // The last piece is what a removal of everything before it leaves: of a WAV all to the end
        // of the file, wherever the stream's length falls; of an MP3, as every removal does, also
        // a frame at the beginning and not the last frame.
        const bool isLast = i + 1 == points.size();
        if (!(isLast ? CutExec(false, source, target, 0, points[i])
                     : CutExec(true, source, target, points[i], points[i + 1]))) {
            ErrorMsg(kErrorSave);
            return false;
        }
        if (i == 0) {
            UpdateCurrentHistory();
        }
        PushHistory(name, target, false, parentId);
    }
    LoadPlayFile();
    sceneChangePositions.clear();
    FinishEdit();
    return true;
}

void Klipra::SaveRange() {
    const HistoryItem* const item = FindCurrentHistoryItem();
    if (item == nullptr) {
        return;
    }
    if (!HasRange()) {
        ErrorMsg(kErrorSave);
        return;
    }
    const std::string output = QueryOutputPath();
    if (output.empty()) {
        return;
    }
    if (IsUsedByHistory(output) ||
        !CutExec(true, item->path, output, cutPositions.start, cutPositions.end)) {
        ErrorMsg(kErrorSave);
    }
}

bool Klipra::Save(std::string& path) {
    HistoryItem* const item = FindCurrentHistoryItem();
    if (item == nullptr) {
        return false;
    }
    path = QueryOutputPath();
    if (path.empty()) {
        return false;
    }
    if (IsUsedByHistory(path) || !CopyFile(item->path, path)) {
        ErrorMsg(kErrorSave);
        return false;
    }
    item->saved = true;
    return true;
}

std::string Klipra::ExtractFolder(const std::string& path) {
    return path.substr(0, path.rfind('/')); // npos: all of it
}

std::string Klipra::ExtractFilename(const std::string& path) {
    return After(path, '/');
}

std::string Klipra::ExtractExtension(const std::string& path) {
    return After(path, '.');
}
