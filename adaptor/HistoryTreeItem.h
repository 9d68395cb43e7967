#pragma once

#include <vector>

/// A node of the history tree: an entry, by its id, and the entries made from it.
///
/// Holds its children, and with them its whole subtree, by value; a copy is one of the subtree. No
/// operation descends by calling itself: a chain of edits may be as long as memory allows.
class HistoryTreeItem {
public:
    HistoryTreeItem() = default;
    explicit HistoryTreeItem(int itemId) : id(itemId) {}
    HistoryTreeItem(const HistoryTreeItem& other);
    HistoryTreeItem(HistoryTreeItem&& other) noexcept = default;
    HistoryTreeItem& operator=(const HistoryTreeItem& other);
    HistoryTreeItem& operator=(HistoryTreeItem&& other) noexcept;
    virtual ~HistoryTreeItem();

    /// The first node with an id in this subtree, a node before its children and these in their
    /// order; null when there is none. Valid until the subtree changes.
    HistoryTreeItem* Find(int wantedId);

    /// The ids of this subtree, a node's before its children's and these in their order.
    std::vector<int> GetIds() const;

    int id = 0;
    std::vector<HistoryTreeItem> children; ///< in the order in which they were added
};
