#pragma once

#include <QAbstractItemModel>
#include <QIcon>

#include <functional>
#include <unordered_map>
#include <vector>

class KlipraMac;
struct HistoryItem;

/// The history tree for the outline: the opened file's entry at the top, under each entry those
/// made from it. The second column tells what an entry's edit did.
///
/// The tree's shape is that of the last Reload: between the steps of an edit the adaptor's own one
/// changes, and a view must not see that. Names and pictures are read when they are drawn.
class HistoryOutlineModel : public QAbstractItemModel {
public:
    /// The text of an entry's second column.
    using Details = std::function<QString(const HistoryItem&)>;

    HistoryOutlineModel(QIcon disk, QIcon save, Details details);

    /// Takes the shape of the adaptor's tree as it is now; null for an empty one. Not owned.
    void Reload(KlipraMac* klipra);

    /// The place of an entry in the first column; invalid for one that is not shown.
    QModelIndex IndexOf(int id) const;
    /// The entry at a place; 0 for the invalid one.
    int IdAt(const QModelIndex& index) const { return static_cast<int>(index.internalId()); }
    /// The entry that another one was made from; 0 for the opened file and for one not shown.
    int ParentIdOf(int id) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& /*parent*/ = {}) const override { return 2; }
    QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
    QModelIndex parent(const QModelIndex& child) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    /// What is shown of an entry; the one with id 0 holds the opened file's.
    struct Node {
        int parentId = 0;
        int row = 0; ///< among the children of its parent
        std::vector<int> childIds;
    };

    const Node* Find(int id) const;

    const Details m_details;
    QIcon diskImage; // of the opened file's entry
    QIcon saveImage; // of an entry that was saved
    KlipraMac* m_klipra = nullptr;
    std::unordered_map<int, Node> m_nodes; // by id
};
