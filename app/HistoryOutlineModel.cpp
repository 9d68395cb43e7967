#include "app/HistoryOutlineModel.h"

#include "adaptor/KlipraMac.h"

namespace {

constexpr int kRootId = 0;       // of what holds the whole tree, and is not shown
constexpr int kOpenedFileId = 1; // of its only child

} // namespace

HistoryOutlineModel::HistoryOutlineModel(QIcon disk, QIcon save, Details details)
    : m_details(std::move(details)), diskImage(std::move(disk)), saveImage(std::move(save)) {
}

void HistoryOutlineModel::Reload(KlipraMac* klipra) {
    beginResetModel();
    m_klipra = klipra;
    m_nodes.clear();
    if (const HistoryTreeItem* const root =
            klipra == nullptr ? nullptr : klipra->FindHistoryTreeItem(kOpenedFileId)) {
        m_nodes[kRootId].childIds = {root->id};
        m_nodes[root->id] = {kRootId, 0, {}};
        std::vector<const HistoryTreeItem*> pending = {root};
        while (!pending.empty()) {
            const HistoryTreeItem* const item = pending.back();
            pending.pop_back();
            std::vector<int> childIds;
            for (const HistoryTreeItem& child : item->children) {
                m_nodes[child.id] = {item->id, static_cast<int>(childIds.size()), {}};
                childIds.push_back(child.id);
                pending.push_back(&child);
            }
            m_nodes[item->id].childIds = std::move(childIds);
        }
    }
    endResetModel();
}

const HistoryOutlineModel::Node* HistoryOutlineModel::Find(int id) const {
    const auto node = m_nodes.find(id);
    return node == m_nodes.end() ? nullptr : &node->second;
}

QModelIndex HistoryOutlineModel::IndexOf(int id) const {
    const Node* const node = Find(id);
    return node == nullptr || id == kRootId ? QModelIndex()
                                            : createIndex(node->row, 0, static_cast<quintptr>(id));
}

int HistoryOutlineModel::ParentIdOf(int id) const {
    const Node* const node = Find(id);
    return node == nullptr ? kRootId : node->parentId;
}

int HistoryOutlineModel::rowCount(const QModelIndex& parent) const {
    const Node* const node = parent.column() > 0 ? nullptr : Find(IdAt(parent));
    return node == nullptr ? 0 : static_cast<int>(node->childIds.size());
}

QModelIndex HistoryOutlineModel::index(int row, int column, const QModelIndex& parent) const {
    return hasIndex(row, column, parent)
               ? createIndex(row, column,
                             static_cast<quintptr>(
                                 Find(IdAt(parent))->childIds[static_cast<std::size_t>(row)]))
               : QModelIndex();
}

QModelIndex HistoryOutlineModel::parent(const QModelIndex& child) const {
    return IndexOf(ParentIdOf(IdAt(child)));
}

QVariant HistoryOutlineModel::data(const QModelIndex& index, int role) const {
    const HistoryItem* const item =
        m_klipra == nullptr ? nullptr : m_klipra->FindHistoryItem(IdAt(index));
    if (item == nullptr) {
        return {};
    }
    if (index.column() > 0) {
        return role == Qt::DisplayRole || role == Qt::ToolTipRole ? m_details(*item) : QVariant();
    }
    if (role == Qt::DisplayRole) {
        return QString::fromStdString(item->name);
    }
    if (role == Qt::DecorationRole && (item->id == kOpenedFileId || item->saved)) {
        return item->id == kOpenedFileId ? diskImage : saveImage;
    }
    return {};
}
