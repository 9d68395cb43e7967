#include "engine/Klipra.h"

#include <algorithm>

Klipra::~Klipra() {
    CloseBASS();
}

void Klipra::PushHistory(const std::string& name, const std::string& path, bool saved,
                         int parentId) {
    currentHistoryId = ++lastHistoryId;
    histories.push_back({currentHistoryId, name, path, CutPositions(), saved,
                         histories.empty() ? 0 : parentId, m_edit, m_editRange, m_editRuns});
    cutPositions = CutPositions();
}

HistoryItem* Klipra::FindHistoryItem(int id) {
    // Entries are only ever appended, so that an id is a place in the list.
    const auto place = static_cast<std::size_t>(id) - 1;
    return id > 0 && place < histories.size() ? &histories[place] : nullptr;
}

void Klipra::UpdateCurrentHistory() {
    if (HistoryItem* const item = FindCurrentHistoryItem(); item != nullptr) {
        item->cutPositions = cutPositions;
    }
}

void Klipra::SelectHistory(int id) {
    if (id == currentHistoryId || m_isBusy) {
        return;
    }
    static_cast<void>(LoadPlayFile(id)); // a failure has been shown
    sceneChangePositions.clear();
    EnableCutButton();
    EnableSaveButton();
    EnableSceneChangeMoveButton();
}

bool Klipra::IsSavedAll() const {
    return std::all_of(histories.begin(), histories.end(),
                       [](const HistoryItem& item) { return item.saved; });
}
