#include "tests/engine/RecordingKlipra.h"

#include <gtest/gtest.h>

namespace {

TEST(History, HandsOutIdsInOrder) {
    RecordingKlipra engine;
    EXPECT_TRUE(engine.IsSavedAll());
    EXPECT_TRUE(engine.LoadPlayFile());
    for (int id = 1; id <= 3; ++id) {
        EXPECT_EQ(engine.FindHistoryItem(id), nullptr);
        engine.Klipra::PushHistory("name", "path", id == 1, 0);
        EXPECT_EQ(engine.currentHistoryId, id);
        EXPECT_EQ(engine.FindHistoryItem(id)->id, id);
        EXPECT_EQ(engine.IsSavedAll(), id == 1);
    }
    EXPECT_EQ(engine.FindHistoryItem(0), nullptr);
}

TEST(SelectHistory, BringsBackTheCutPositionsStoredLast) {
    RecordingKlipra engine;
    engine.Open(WavBuilder::Pattern(16000));
    engine.cutPositions = {2000, 4000};
    ASSERT_TRUE(engine.Cut(false));
    engine.cutPositions = {100, 200}; // not stored by any edit
    engine.sceneChangePositions = {1};
    engine.TakeCalls();

    engine.SelectHistory(2);
    EXPECT_EQ(engine.TakeCalls(), ""); // it is current
    EXPECT_EQ(engine.sceneChangePositions.size(), 1);

    engine.SelectHistory(1);
    EXPECT_EQ(engine.TakeCalls(), "Zoom:1 EnableZoomMenu EnableCutButton EnableSaveButton "
                                  "EnableSceneChangeMoveButton");
    EXPECT_EQ(engine.cutPositions, (CutPositions{2000, 4000}));
    EXPECT_EQ(engine.length, 16000);
    EXPECT_TRUE(engine.sceneChangePositions.empty());

    engine.SelectHistory(2);
    EXPECT_EQ(engine.cutPositions, CutPositions());
    EXPECT_EQ(engine.length, 14000);

    engine.sceneChangePositions = {1};
    engine.SelectHistory(9); // there is none
    EXPECT_EQ(engine.TakeCalls(), "Zoom:1 EnableZoomMenu EnableCutButton EnableSaveButton "
                                  "EnableSceneChangeMoveButton EnableCutButton EnableSaveButton "
                                  "EnableSceneChangeMoveButton");
    EXPECT_TRUE(engine.sceneChangePositions.empty());
    EXPECT_EQ(engine.currentHistoryId, 2);
    EXPECT_EQ(engine.length, 14000);
}

} // namespace
