#include "tests/adaptor/RecordingDelegate.h"

#include <gtest/gtest.h>

namespace {

/// A subtree as text: an id and, in brackets, its children.
std::string Shape(const HistoryTreeItem& node) {
    std::string shape = std::to_string(node.id);
    for (const HistoryTreeItem& child : node.children) {
        shape.append(&child == &node.children.front() ? "(" : " ").append(Shape(child));
    }
    return node.children.empty() ? shape : shape.append(")");
}

TEST(HistoryTree, HoldsTheLatestEditOfEachEntry) {
    OpenedFile file(SilentWav(3));
    KlipraMac& adaptor = file.adaptor;
    EXPECT_EQ(file.delegate.TakeCalls(), "Zoom:1 enableZoomMenu");

    adaptor.cutPositions = {0, 32000};
    ASSERT_TRUE(adaptor.Cut(true));
    EXPECT_EQ(file.delegate.TakeCalls(),
              "refresh:2 Zoom:1 enableZoomMenu enableTimer EnableCutButton "
              "EnableSaveButton EnableSceneChangeMoveButton");
    adaptor.cutPositions = {8000, 16000};
    ASSERT_TRUE(adaptor.Split());
    EXPECT_EQ(Shape(*adaptor.FindHistoryTreeItem(1)), "1(2(3 4 5))");

    adaptor.SelectHistory(2);
    adaptor.cutPositions = {0, 8000};
    ASSERT_TRUE(adaptor.Cut(false));
    EXPECT_EQ(Shape(*adaptor.FindHistoryTreeItem(1)), "1(2(6))");
    EXPECT_EQ(adaptor.FindHistoryTreeItem(4), nullptr);

    adaptor.PushHistory("#-9", file.path, false, 4); // whose parent the tree no longer holds
    EXPECT_EQ(Shape(*adaptor.FindHistoryTreeItem(1)), "1(2(6) 7)");
}

TEST(HistoryTree, DeepChainsNeedNoStack) {
    constexpr int kDepth = 300'000; // 100 bytes of stack each would be too much
    HistoryTreeItem root(1);
    HistoryTreeItem* node = &root;
    for (int id = 2; id <= kDepth; ++id) {
        node = &node->children.emplace_back(id);
    }
    HistoryTreeItem copy;
    copy = root;
    root.children.clear();
    copy = HistoryTreeItem(copy.children.front()); // a part of itself
    EXPECT_EQ(copy.Find(1), nullptr);
    EXPECT_NE(copy.Find(kDepth), nullptr);
}

} // namespace
