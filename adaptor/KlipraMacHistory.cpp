#include "adaptor/KlipraMac.h"

#include <set>
#include <unistd.h>

void KlipraMac::PushHistory(const std::string& name, const std::string& path, bool saved,
                            int parentId) {
    const bool isFirst = currentHistoryId < 0;
    Klipra::PushHistory(name, path, saved, parentId);
    if (isFirst) {
        historyRoot.id = currentHistoryId;
        return;
    }
    HistoryTreeItem* const parent = FindHistoryTreeItem(parentId);
    (parent != nullptr ? *parent : historyRoot).children.emplace_back(currentHistoryId);
    WriteJournal(); // first: what is shown is safe
    appDelegate->refreshHistoryOutlineView(currentHistoryId);
}

void KlipraMac::DeleteAllChildren() {
    HistoryTreeItem* const node = FindHistoryTreeItem(currentHistoryId);
    if (node == nullptr) {
        return;
    }
    const std::vector<int> ids = node->GetIds();
    m_droppedIds.insert(m_droppedIds.end(), ids.begin() + 1, ids.end());
    m_isJournalCurrent = m_isJournalCurrent && node->children.empty();
    while (!node->children.empty()) {
        node->children.pop_back();
    }
}

void KlipraMac::DeleteDroppedFiles() {
    if (m_droppedIds.empty()) {
        return;
    }
    std::set<std::string> used = {histories.front().path};
    for (const int id : historyRoot.GetIds()) {
        used.insert(FindHistoryItem(id)->path);
    }
    if (const HistoryItem* const item = FindHistoryItem(currentHistoryId); item != nullptr) {
        used.insert(item->path); // which the tree may not hold
    }
    for (const int id : m_droppedIds) {
        if (const std::string& path = FindHistoryItem(id)->path; !used.contains(path)) {
            unlink(path.c_str());
        }
    }
    m_droppedIds.clear();
}

std::string KlipraMac::GetCurrentHistoryItemName() {
    const HistoryItem* const item = FindHistoryItem(currentHistoryId);
    return item == nullptr ? "" : item->name.substr(0, item->name.find(' '));
}

HistoryTreeItem* KlipraMac::FindHistoryTreeItem(HistoryTreeItem* node, int id) {
    return node == nullptr ? nullptr : node->Find(id);
}

void KlipraMac::UpdateHistoryItem(const std::string& path) {
    if (HistoryItem* const item = FindHistoryItem(currentHistoryId); item != nullptr) {
        item->name.append(" ").append(ExtractFilename(path));
        item->saved = true;
        WriteJournal();
    }
}
