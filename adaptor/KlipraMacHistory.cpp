#include "adaptor/KlipraMac.h"

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
    appDelegate->refreshHistoryOutlineView(currentHistoryId);
}

void KlipraMac::DeleteAllChildren() {
    HistoryTreeItem* const node = FindHistoryTreeItem(currentHistoryId);
    while (node != nullptr && !node->children.empty()) {
        node->children.pop_back();
    }
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
    }
}
