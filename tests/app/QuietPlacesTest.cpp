#include "app/PieceWriter.h"
#include "app/QuietPanel.h"
#include "app/QuietScale.h"
#include "tests/app/Program.h"

#include <QLabel>
#include <QListView>
#include <QSlider>

namespace {

/// The song with its list of quiet places shown and filled.
struct ListedProgram : Program {
    ListedProgram() {
        Trigger("QuietListMenu");
        Await([&] { return count->text() == "2か所"; });
    }
    QLabel* count = Find<QLabel>("quietCount");
    QListView* list = Find<QListView>("quietList");
};

TEST(QuietPlaces, AreListedAtOnceShownAndGoneTo) {
    ListedProgram program;
    EXPECT_EQ(program.list->model()->index(0, 0).data().toString(), "0:01.500　0.50秒");
    program.list->setCurrentIndex({});
    Q_EMIT program.list->clicked(program.list->model()->index(1, 0));
    EXPECT_EQ(program.Engine().GetCurrentPosition(), 52'000);
    EXPECT_TRUE(program.Find("placeTicks")->isVisible());

    program.Find<QSlider>("quietSeconds")->setValue(26); // 0.52 seconds
    EXPECT_EQ(program.count->text(), "0か所");
    EXPECT_FALSE(program.Find("quietExport")->isEnabled());
    EXPECT_EQ(program.Engine().thresholdTime, QuietLengthScale::SecondsOf(26));
    program.Engine().thresholdTime = 0.2F; // as in the settings
    program.Trigger("CutDelButton", 0, 32'000);
    Await([&] { return program.count->text() == "1か所"; });
    program.Trigger("QuietListMenu");
    EXPECT_FALSE(program.Find("quietPanel")->isVisible() ||
                 program.Find("placeTicks")->isVisible());
}

TEST(QuietPlaces, ASliderStepIsSoManyBlocks) {
    for (int blocks = QuietLengthScale::kLeast; blocks <= QuietLengthScale::kMost; ++blocks) {
        for (const int there : {blocks - 1, blocks}) {
            QuietStretches stretches(0.5F, QuietLengthScale::SecondsOf(blocks));
            for (int i = 0; i < there; ++i) {
                stretches.Add({});
            }
            stretches.Finish(1);
            EXPECT_EQ(stretches.Found().size(), there == blocks ? 1U : 0U) << blocks;
        }
    }
}

TEST(QuietPlaces, AreExportedAsTheExtensionSays) {
    ListedProgram program;
    const std::pair<std::string, std::string> cases[] = {
        {"a.csv", "28000,1.750000,"},
        {"a.TXT", "1.750000\t1.750000\t1\n3.250000\t3.250000\t2\n"},
        {"a.cue", "FILE \"a song.wav\" WAVE"}};
    for (const auto& [name, text] : cases) {
        program.desktop.answer = program.folder.Path(name);
        program.Find<QAbstractButton>("quietExport")->click();
        EXPECT_NE(TemporaryFolder::Read(program.desktop.answer).find(text), std::string::npos)
            << TemporaryFolder::Read(program.desktop.answer);
    }
    program.desktop.answer = program.path;
    program.Find<QAbstractButton>("quietExport")->click();
    EXPECT_EQ(TemporaryFolder::Read(program.path), Wav(Song()));
}

TEST(QuietPlaces, SplitTheFileIntoPiecesThatAreTheWhole) {
    ListedProgram program;
    program.desktop.answer = program.folder.Path("part-%.wav");
    program.Find<QAbstractButton>("quietSplit")->click();
    const Samples song = Song();
    for (const auto& [first, last] : {std::pair{0, 14'000}, {14'000, 26'000}, {26'000, 40'000}}) {
        const std::string path =
            program.folder.Path("part-" + std::to_string(1 + first / 13'000) + ".wav");
        const std::string expected = Wav({song.begin() + first, song.begin() + last});
        EXPECT_TRUE(TemporaryFolder::Read(path).substr(44) == expected.substr(44)) << path;
    }
    EXPECT_EQ(program.Engine().histories.size(), 1);
    program.desktop.choice = 0; // not to replace them
    program.desktop.texts.clear();
    program.folder.Write("part-1.wav", "old");
    program.Find<QAbstractButton>("quietSplit")->click();
    EXPECT_EQ(TemporaryFolder::Read(program.folder.Path("part-1.wav")), "old");
    EXPECT_NE(program.desktop.texts, "");
    EXPECT_EQ(PieceNames("/a%/b.mp3", 11).at(10) + PieceNames("c%d", 1).at(0), "/a%/b-11.mp3c1d");
}

} // namespace
