#include "engine/Busy.h"
#include "engine/Klipra.h"

#include <algorithm>
#include <utility>

namespace {

// What tells the temporary file of an entry from those of the others: its name without "#-".
std::string Suffix(const std::string& name) {
    return name.substr(2);
}

} // namespace

void Klipra::FinishEdit() {
    EnableTimer();
    EnableCutButton();
    EnableSaveButton();
    EnableSceneChangeMoveButton();
}

void Klipra::ReportFailure() {
    if (!m_lastFailure.IsCancelled()) {
        ErrorMsg(kErrorSave);
    }
}

bool Klipra::Cut(bool keep) {
    const HistoryItem* const item = FindCurrentHistoryItem();
    if (item == nullptr || m_isBusy) {
        return false;
    }
    const Busy busy(m_isBusy, m_lastFailure);
    const int parentId = item->id;
    const std::string name = GetCurrentHistoryItemName() + "-1";
    const std::string target = MakeTargetPath(Suffix(name));
    if (!HasRange() || !CutExec(keep, item->path, target, cutPositions.start, cutPositions.end)) {
        ReportFailure();
        return false;
    }
    const CutPositions range = cutPositions;
    UpdateCurrentHistory();
    DeleteAllChildren();
    PushEdit(keep ? EditKind::Extract : EditKind::Remove, range, name, target, parentId);
    const bool isLoaded = LoadPlayFile();
    sceneChangePositions.clear();
    if (isLoaded && !keep) {
        SetCurrentPosition(range.start);
    }
    FinishEdit();
    return true;
}

bool Klipra::ExecuteEdit(EditKind edit, const std::string& source, const std::string& target,
                         const CutPositions& range) {
    // The last piece of a split is what a removal of everything before it leaves: of a WAV all to
    // the end of the file, wherever the stream's length falls; of an MP3, as every removal does,
    // also a frame at the beginning and not the last frame.
    return edit == EditKind::Split && range.end == kUnsetPosition
               ? CutExec(false, source, target, 0, range.start)
               : CutExec(edit != EditKind::Remove, source, target, range.start, range.end);
}

bool Klipra::RepeatEdit(int parentId, EditKind edit, const CutPositions& marks,
                        const CutPositions& range, int piece) {
    const HistoryItem* const parent = FindHistoryItem(parentId);
    if (parent == nullptr || m_isBusy || (m_loadedId != parentId && !LoadPlayFile(parentId))) {
        return false;
    }
    const Busy busy(m_isBusy, m_lastFailure);
    const std::string name =
        parent->name.substr(0, parent->name.find(' ')) + "-" + std::to_string(piece);
    const std::string target = MakeTargetPath(Suffix(name));
    if (!ExecuteEdit(edit, parent->path, target, range)) {
        return false;
    }
    FindHistoryItem(parentId)->cutPositions = marks;
    PushEdit(edit, range, name, target, parentId);
    return true;
}

void Klipra::PushEdit(EditKind edit, const CutPositions& range, const std::string& name,
                      const std::string& path, int parentId) {
    m_edit = edit;
    m_editRange = range;
    m_editRuns = RunsOfEdit(edit, range, parentId);
    PushHistory(name, path, false, parentId);
    m_edit = EditKind::None;
    m_editRange = {};
    m_editRuns = {};
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
    if (item == nullptr || points.size() < 2 || m_isBusy) {
        return false;
    }
    const Busy busy(m_isBusy, m_lastFailure);
    const int parentId = item->id;
    const std::string source = item->path;
    const std::string base = GetCurrentHistoryItemName() + "-";
    DeleteAllChildren();
    for (std::size_t i = 0; i < points.size(); ++i) {
        const std::string name = base + std::to_string(i + 1);
        const std::string target = MakeTargetPath(Suffix(name));
        const bool isLast = i + 1 == points.size();
        const CutPositions range = {points[i], isLast ? kUnsetPosition : points[i + 1]};
        if (!ExecuteEdit(EditKind::Split, source, target, range)) {
            AbandonSplit(parentId);
            return false;
        }
        if (i == 0) {
            UpdateCurrentHistory();
        }
        PushEdit(EditKind::Split, range, name, target, parentId);
    }
    static_cast<void>(LoadPlayFile()); // a failure has been shown
    sceneChangePositions.clear();
    FinishEdit();
    return true;
}

void Klipra::AbandonSplit(int parentId) {
    if (!m_lastFailure.IsCancelled()) {
        ErrorMsg(kErrorSave);
        return;
    }
    if (std::exchange(currentHistoryId, parentId) != parentId) {
        cutPositions = FindCurrentHistoryItem()->cutPositions;
        DeleteAllChildren(); // the pieces that were written
    }
    FinishEdit();
}
