#include "tests/engine/RecordingKlipra.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr char kFinish[] = " Zoom:1 EnableZoomMenu EnableTimer EnableCutButton EnableSaveButton "
                           "EnableSceneChangeMoveButton";

class Edits : public testing::Test {
protected:
    // Ten seconds, so that positions are the same in bytes, in seconds and in single precision.
    Edits() { m_engine.Open(m_samples); }

    std::string SamplesOf(const std::string& path) const {
        const std::string bytes = TemporaryFolder::Read(path);
        return bytes.substr(std::min(bytes.size(), WavBuilder().Header().size()));
    }

    const HistoryItem& Item(int id) { return *m_engine.FindHistoryItem(id); }

    std::string m_samples = WavBuilder::Pattern(160000);
    RecordingKlipra m_engine;
};

TEST_F(Edits, CutOutRemovesTheRangeInEitherOrderAndMovesToItsStart) {
    m_engine.cutPositions = {48000, 32000};
    m_engine.sceneChangePositions = {1};
    EXPECT_TRUE(m_engine.Cut(false));
    EXPECT_EQ(m_engine.TakeCalls(),
              std::string("GetName Target:1 CutExec DeleteAllChildren Push:#-1:1") + kFinish);
    EXPECT_TRUE(SamplesOf(Item(2).path) == m_samples.substr(0, 32000) + m_samples.substr(48000));
    EXPECT_EQ(m_engine.GetCurrentPosition(), 48000);
    EXPECT_EQ(m_engine.length, 144000);
    EXPECT_EQ(Item(1).cutPositions, (CutPositions{48000, 32000}));
    EXPECT_EQ(m_engine.cutPositions, CutPositions());
    EXPECT_FALSE(Item(2).saved);
    EXPECT_TRUE(m_engine.sceneChangePositions.empty());
}

TEST_F(Edits, ExtractKeepsTheRangeAndStandsAtItsBeginning) {
    m_engine.cutPositions = {32000, 48000};
    EXPECT_TRUE(m_engine.Cut(true));
    EXPECT_TRUE(SamplesOf(Item(2).path) == m_samples.substr(32000, 16000));
    EXPECT_EQ(m_engine.GetCurrentPosition(), 0);

    m_engine.FindHistoryItem(2)->name += " saved.wav"; // the label ends at the blank
    m_engine.cutPositions = {0, 8000};
    EXPECT_TRUE(m_engine.Cut(true));
    EXPECT_EQ(Item(3).path, m_engine.PathOf("1-1"));

    m_engine.SelectHistory(1); // a new edit from there writes over the file of the old one
    m_engine.cutPositions = {16000, 48000};
    ASSERT_TRUE(m_engine.Cut(true));
    EXPECT_EQ(Item(4).path, Item(2).path);
    EXPECT_TRUE(SamplesOf(Item(4).path) == m_samples.substr(16000, 32000));
}

TEST_F(Edits, AFailedCutChangesNothing) {
    const std::uint32_t channel = m_engine.channel;
    const std::string old = m_engine.folder.Write("1.wav", "old");
    fs::resize_file(Item(1).path, 30); // what it was loaded from is gone
    m_engine.cutPositions = {0, 16000};
    EXPECT_FALSE(m_engine.Cut(false));
    EXPECT_EQ(m_engine.TakeCalls(), "GetName Target:1 CutExec ErrorMsg:2");
    EXPECT_EQ(m_engine.histories.size(), 1);
    EXPECT_EQ(m_engine.channel, channel);
    EXPECT_EQ(Item(1).cutPositions, CutPositions());
    EXPECT_EQ(TemporaryFolder::Read(old), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator(m_engine.folder.Path("")), {}), 2);
}

TEST_F(Edits, SplitWritesThePiecesBetweenTheUsablePositions) {
    struct Case {
        CutPositions positions;
        std::vector<std::size_t> points;
    };
    const std::vector<Case> cases = {
        {{kUnsetPosition, 32000}, {32000}}, {{64000, 32000}, {32000, 64000}},
        {{32000, 32000}, {32000, 32000}},   {{0, 32000}, {32000}},
        {{32000, 159999}, {32000}},
    };
    for (const auto& [positions, points] : cases) {
        SCOPED_TRACE(std::to_string(positions.start) + " " + std::to_string(positions.end));
        RecordingKlipra engine;
        engine.Open(m_samples);
        engine.cutPositions = positions;
        ASSERT_TRUE(engine.Split());
        EXPECT_TRUE(engine.TakeCalls().ends_with(
            std::string("CutExec Push:#-") + std::to_string(points.size() + 1) + ":1" + kFinish));
        ASSERT_EQ(engine.histories.size(), points.size() + 2);
        for (std::size_t i = 0; i <= points.size(); ++i) {
            const std::size_t start = i == 0 ? 0 : points[i - 1];
            const std::size_t end = i == points.size() ? m_samples.size() : points[i];
            EXPECT_TRUE(SamplesOf(engine.histories[i + 1].path) ==
                        m_samples.substr(start, end - start));
        }
        EXPECT_EQ(engine.histories[0].cutPositions, positions);
        EXPECT_EQ(engine.length, m_samples.size() - points.back());
    }
}

TEST_F(Edits, SplitKeepsThePiecesWrittenBeforeItFails) {
    const std::uint32_t channel = m_engine.channel;
    m_engine.cutPositions = {kUnsetPosition, 0};
    EXPECT_FALSE(m_engine.Split());
    EXPECT_EQ(m_engine.TakeCalls(), ""); // there is nothing to split

    m_engine.cutPositions = {16000, 32000};
    m_engine.failingCut = 3;
    EXPECT_FALSE(m_engine.Split());
    EXPECT_EQ(m_engine.TakeCalls(), "GetName DeleteAllChildren Target:1 CutExec Push:#-1:1 "
                                    "Target:2 CutExec Push:#-2:1 Target:3 CutExec ErrorMsg:2");
    EXPECT_EQ(m_engine.currentHistoryId, 3);
    EXPECT_EQ(m_engine.channel, channel);
}

TEST_F(Edits, SaveCopiesTheFileAndSaveRangeCutsIt) {
    m_engine.cutPositions = {0, 16000};
    ASSERT_TRUE(m_engine.Cut(true));
    m_engine.TakeCalls();
    std::string path;
    EXPECT_FALSE(m_engine.Save(path));
    EXPECT_EQ(m_engine.TakeCalls(), "Query"); // cancelled

    m_engine.outputPath = m_engine.folder.Path("no/folder.wav");
    EXPECT_FALSE(m_engine.Save(path));
    EXPECT_EQ(m_engine.TakeCalls(), "Query CopyFile ErrorMsg:2");
    EXPECT_FALSE(Item(2).saved);

    m_engine.outputPath = m_engine.folder.Path("out.wav");
    EXPECT_TRUE(m_engine.Save(path));
    EXPECT_EQ(path, m_engine.outputPath);
    EXPECT_TRUE(Item(2).saved);
    EXPECT_TRUE(TemporaryFolder::Read(path) == TemporaryFolder::Read(Item(2).path));

    m_engine.cutPositions = {8000, 4000}; // another file may be replaced
    m_engine.TakeCalls();
    m_engine.SaveRange();
    m_engine.formatType = FormatType{}; // a failure leaves it as it is
    m_engine.SaveRange();
    EXPECT_EQ(m_engine.TakeCalls(), "Query CutExec Query CutExec ErrorMsg:2");
    EXPECT_TRUE(SamplesOf(path) == m_samples.substr(4000, 4000));
}

TEST_F(Edits, NothingIsWrittenOverAFileOfTheHistory) {
    m_engine.cutPositions = {16000, 32000};
    ASSERT_TRUE(m_engine.Cut(true));
    m_engine.cutPositions = {0, 8000};
    const std::string link = m_engine.folder.Path("link.wav");
    fs::create_hard_link(Item(1).path, link);
    const std::string files =
        TemporaryFolder::Read(Item(1).path) + TemporaryFolder::Read(Item(2).path);
    m_engine.TakeCalls();
    for (const std::string& path :
         {Item(1).path, Item(2).path, link, m_engine.folder.Path("./a b.wav")}) {
        SCOPED_TRACE(path);
        m_engine.outputPath = path;
        std::string out;
        EXPECT_FALSE(m_engine.Save(out));
        m_engine.SaveRange();
        EXPECT_EQ(m_engine.TakeCalls(), "Query ErrorMsg:2 Query ErrorMsg:2");
        EXPECT_FALSE(m_engine.Klipra::CutExec(true, Item(2).path, path, 0, 8000));
    }
    EXPECT_TRUE(TemporaryFolder::Read(Item(1).path) + TemporaryFolder::Read(Item(2).path) == files);
}

TEST(Paths, AreTakenApartFromTheirEnd) {
    const std::vector<std::vector<std::string>> cases = {
        {"/x/y/z.mp3", "/x/y", "z.mp3", "mp3"},
        {"noext", "noext", "noext", "noext"},
        {"a.b/c", "a.b", "c", "b/c"},
        {"a/", "a", "", "a/"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Klipra::ExtractFolder(c[0]), c[1]);
        EXPECT_EQ(Klipra::ExtractFilename(c[0]), c[2]);
        EXPECT_EQ(Klipra::ExtractExtension(c[0]), c[3]);
    }
}

} // namespace
