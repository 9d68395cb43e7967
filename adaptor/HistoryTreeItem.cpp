#include "adaptor/HistoryTreeItem.h"

#include <iterator>
#include <utility>

HistoryTreeItem::HistoryTreeItem(const HistoryTreeItem& other) : id(other.id) {
    std::vector<std::pair<const HistoryTreeItem*, HistoryTreeItem*>> pending = {{&other, this}};
    while (!pending.empty()) {
        const auto [from, to] = pending.back();
        pending.pop_back();
        to->children.resize(from->children.size());
        for (std::size_t i = 0; i < from->children.size(); ++i) {
            to->children[i].id = from->children[i].id;
            pending.emplace_back(&from->children[i], &to->children[i]);
        }
    }
}

HistoryTreeItem& HistoryTreeItem::operator=(const HistoryTreeItem& other) {
    return *this = HistoryTreeItem(other);
}

HistoryTreeItem& HistoryTreeItem::operator=(HistoryTreeItem&& other) noexcept {
    // By way of a third: the other one may be a child of this.
    HistoryTreeItem moved(std::move(other));
    std::swap(id, moved.id);
    std::swap(children, moved.children);
    return *this;
}

HistoryTreeItem::~HistoryTreeItem() {
    // Takes the subtree apart, so that every node dies without children.
    while (!children.empty()) {
        HistoryTreeItem last = std::move(children.back());
        children.pop_back();
        children.insert(children.end(), std::make_move_iterator(last.children.begin()),
                        std::make_move_iterator(last.children.end()));
        last.children.clear();
    }
}

HistoryTreeItem* HistoryTreeItem::Find(int wantedId) {
    std::vector<HistoryTreeItem*> pending = {this};
    while (!pending.empty()) {
        HistoryTreeItem* const node = pending.back();
        pending.pop_back();
        if (node->id == wantedId) {
            return node;
        }
        for (auto child = node->children.rbegin(); child != node->children.rend(); ++child) {
            pending.push_back(&*child);
        }
    }
    return nullptr;
}

std::vector<int> HistoryTreeItem::GetIds() const {
    std::vector<int> ids;
    std::vector<const HistoryTreeItem*> pending = {this};
    while (!pending.empty()) {
        const HistoryTreeItem* const node = pending.back();
        pending.pop_back();
        ids.push_back(node->id);
        for (auto child = node->children.rbegin(); child != node->children.rend(); ++child) {
            pending.push_back(&*child);
        }
    }
    return ids;
}
