#include "tests/engine/RecordingKlipra.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

namespace fs = std::filesystem;

const std::string kFinish = " Zoom:1 EnableZoomMenu EnableTimer EnableCutButton EnableSaveButton "
                            "EnableSceneChangeMoveButton";

class Edits : public testing::Test {
protected:
    // Ten seconds, so that positions are the same in bytes, in seconds and in single precision.
    Edits() { m_engine.Open(m_samples); }

    const HistoryItem& Item(int id) { return *m_engine.FindHistoryItem(id); }

    static std::string SamplesOf(const std::string& path) {
        return TemporaryFolder::Read(path).substr(WavBuilder().Header().size());
    }

    bool Cut(bool keep, const CutPositions& positions) {
        m_engine.cutPositions = positions;
        return m_engine.Cut(keep);
    }

    std::string m_samples = WavBuilder::Pattern(160000);
    RecordingKlipra m_engine;
};

TEST_F(Edits, CutOutRemovesTheRangeInEitherOrderAndItsParentCanBeSelected) {
    m_engine.sceneChangePositions = {1};
    EXPECT_TRUE(Cut(false, {48000, 32000}));
    EXPECT_EQ(m_engine.TakeCalls(),
              "GetName Target:1 CutExec DeleteAllChildren Push:#-1:1" + kFinish);
    EXPECT_TRUE(SamplesOf(Item(2).path) == m_samples.substr(0, 32000) + m_samples.substr(48000));
    EXPECT_EQ(m_engine.GetCurrentPosition(), 48000);
    EXPECT_EQ(m_engine.cutPositions, CutPositions());
    EXPECT_TRUE(m_engine.sceneChangePositions.empty());

    m_engine.cutPositions = {100, 200}; // not stored by any edit
    m_engine.sceneChangePositions = {1};
    m_engine.SelectHistory(2); // it is current
    EXPECT_EQ(m_engine.sceneChangePositions.size(), 1);
    m_engine.SelectHistory(1);
    EXPECT_EQ(m_engine.TakeCalls(), "Zoom:1 EnableZoomMenu EnableCutButton EnableSaveButton "
                                    "EnableSceneChangeMoveButton");
    EXPECT_EQ(m_engine.cutPositions, (CutPositions{48000, 32000}));
    EXPECT_EQ(m_engine.length, 160000);
    EXPECT_TRUE(m_engine.sceneChangePositions.empty());
    m_engine.SelectHistory(9); // there is none
    EXPECT_EQ(m_engine.currentHistoryId, 1);
    m_engine.SelectHistory(2);
    EXPECT_EQ(m_engine.cutPositions, CutPositions());
}

TEST_F(Edits, SplitWritesThePiecesBetweenTheUsablePositions) {
    using Bounds = std::vector<std::size_t>;
    for (const auto& [positions, bounds] :
         std::vector<std::pair<CutPositions, Bounds>>{{{64000, 32000}, {0, 32000, 64000, 160000}},
                                                      {{0, 32000}, {0, 32000, 160000}},
                                                      {{32000, 159999}, {0, 32000, 160000}},
                                                      {{1000, 1000}, {0, 1000, 1000, 160000}}}) {
        SCOPED_TRACE(std::to_string(positions.start) + " " + std::to_string(positions.end));
        m_engine.SelectHistory(1);
        m_engine.cutPositions = positions;
        ASSERT_TRUE(m_engine.Split());
        const std::size_t pieces = bounds.size() - 1;
        EXPECT_TRUE(m_engine.TakeCalls().ends_with("CutExec Push:#-" + std::to_string(pieces) +
                                                   ":1" + kFinish));
        for (std::size_t i = 0; i < pieces; ++i) {
            EXPECT_TRUE(SamplesOf((m_engine.histories.end() - (pieces - i))->path) ==
                        m_samples.substr(bounds[i], bounds[i + 1] - bounds[i]));
        }
        EXPECT_EQ(Item(1).cutPositions, positions);
    }
}

TEST_F(Edits, AFailureKeepsWhatThereWas) {
    m_engine.cutPositions = {kUnsetPosition, 0};
    EXPECT_FALSE(m_engine.Split());
    EXPECT_EQ(m_engine.TakeCalls(), ""); // there is nothing to split

    m_engine.cutPositions = {16000, 32000};
    fs::create_directory(m_engine.folder.Path("3.wav"));
    EXPECT_FALSE(m_engine.Split());
    EXPECT_EQ(m_engine.TakeCalls(), "GetName DeleteAllChildren Target:1 CutExec Push:#-1:1 "
                                    "Target:2 CutExec Push:#-2:1 Target:3 CutExec ErrorMsg:2");
    const std::string old = m_engine.folder.Write("2-1.wav", "old");
    fs::resize_file(Item(3).path, 30); // what the next cut would be made from
    EXPECT_FALSE(Cut(false, {0, 8000}));
    EXPECT_EQ(m_engine.TakeCalls(), "GetName Target:2-1 CutExec ErrorMsg:2");
    EXPECT_EQ(Item(3).cutPositions, CutPositions());
    EXPECT_EQ(TemporaryFolder::Read(old), "old");
}

TEST_F(Edits, ExtractsAndSavesToAnyFileThatTheHistoryDoesNotUse) {
    ASSERT_TRUE(Cut(true, {32000, 48000}));
    EXPECT_EQ(m_engine.GetCurrentPosition(), 0);
    m_engine.TakeCalls();
    std::string path;
    EXPECT_FALSE(m_engine.Save(path)); // cancelled
    m_engine.outputPath = m_engine.folder.Path("no/folder.wav");
    EXPECT_FALSE(m_engine.Save(path));
    EXPECT_EQ(m_engine.TakeCalls(), "Query Query CopyFile ErrorMsg:2");
    EXPECT_FALSE(m_engine.IsSavedAll());
    m_engine.outputPath = m_engine.folder.Path("out.wav");
    EXPECT_TRUE(m_engine.Save(path));
    EXPECT_TRUE(m_engine.IsSavedAll());
    EXPECT_TRUE(SamplesOf(path) == m_samples.substr(32000, 16000));

    m_engine.TakeCalls();
    m_engine.cutPositions = {8000, 4000};
    m_engine.SaveRange();
    m_engine.formatType = FormatType{}; // a failure leaves it as it is
    m_engine.SaveRange();
    EXPECT_EQ(m_engine.TakeCalls(), "Query CutExec Query CutExec ErrorMsg:2");
    EXPECT_TRUE(SamplesOf(m_engine.outputPath) == m_samples.substr(36000, 4000));

    m_engine.formatType = FormatType::WAV;
    const std::string link = m_engine.folder.Path("link.wav");
    fs::create_hard_link(Item(1).path, link);
    for (const std::string& used : {Item(2).path, link}) {
        m_engine.outputPath = used;
        EXPECT_FALSE(m_engine.Save(path));
        m_engine.SaveRange();
        EXPECT_EQ(m_engine.TakeCalls(), "Query ErrorMsg:2 Query ErrorMsg:2");
        EXPECT_FALSE(m_engine.Klipra::CutExec(true, Item(2).path, used, 0, 8000));
    }
}

TEST(Paths, AreTakenApartFromTheirEnd) {
    EXPECT_EQ(Klipra::ExtractFolder("/x/y/z.tar.mp3"), "/x/y");
    EXPECT_EQ(Klipra::ExtractFilename("/x/y/z.tar.mp3"), "z.tar.mp3");
    EXPECT_EQ(Klipra::ExtractExtension("/x/y/z.tar.mp3"), "mp3");
    EXPECT_EQ(Klipra::ExtractExtension("noext"), "noext");
}

} // namespace
