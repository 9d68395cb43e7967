#include "tests/app/Program.h"

#include <QLabel>
#include <QTimer>

#include <atomic>
#include <filesystem>
#include <thread>

namespace {

/// A program whose every command has something to do: the first four seconds are an entry, which is
/// marked.
struct EditedProgram : Program {
    EditedProgram() {
        Trigger("CutExtButton", 0, 64'000);
        Engine().SetCurrentPosition(8'000);
        Engine().cutPositions = {16'000, 32'000};
        delegate.EnableCutButton();
        Engine().sceneChangePositions = {1'600, 12'000};
        delegate.EnableSceneChangeMoveButton();
        desktop.answer = folder.Path("out.wav");
        AwaitScan(); // which a search waits for
    }
};

TEST(Commands, DoTheSameFromButtonAndMenu) {
    const std::string fresh = "Play Save CutUndo ";
    const std::string old = "Play CutDel CutExt Split SaveRange Save ";
    const std::string all = "Play CutDel CutExt Split SaveRange Save ScBack ScNext CutUndo ";
    const std::tuple<const char*, const char*, std::string> cases[] = {
        {"Begin", "0 4000 1000 2000 #-1", all},
        {"Last", "3999 4000 1000 2000 #-1", all},
        {"SetStart", "500 4000 500 2000 #-1", all},
        {"SetEnd", "500 4000 1000 500 #-1", all},
        {"Detect", "1750 4000 1000 2000 #-1", all},
        {"ScNext", "750 4000 1000 2000 #-1", all},
        {"ScBack", "100 4000 1000 2000 #-1", all},
        {"CutExt", "0 1000 -1 -1 #-1-1", fresh},
        {"CutDel", "1000 3000 -1 -1 #-1-1", fresh},
        {"Split", "0 2000 -1 -1 #-1-3", fresh},
        {"Save", "500 4000 1000 2000 #-1 out.wav", all},
        {"SaveRange", "500 4000 1000 2000 #-1", all},
        {"SaveFinished", "500 4000 1000 2000 #-1 out.wav", all},
        {"SaveRangeFinished", "500 4000 1000 2000 #-1", all},
        {"CutUndo", "0 5000 0 4000 # a song.wav", old}};
    for (const auto& [command, state, enabled] : cases) {
        for (const QString control : {"Button", "Menu"}) {
            EditedProgram program;
            if (program.Find<QObject>(command + control) != nullptr) {
                program.Trigger(command + control);
                EXPECT_EQ(program.State() + ": " + program.Enabled(), state + (": " + enabled));
            }
        }
    }
}

TEST(Commands, SaveNothingWithoutAnAnswerOrOverTheOpenedFile) {
    EditedProgram program;
    const std::string state = program.State() + program.Enabled();
    for (const std::string& answer : {std::string(), program.path}) {
        program.desktop.answer = answer;
        program.Trigger("SaveMenu");
        program.Trigger("SaveRangeMenu");
        EXPECT_EQ(program.State() + program.Enabled(), state);
    }
    const std::string failure = "保存できませんでした。";
    EXPECT_EQ(program.desktop.texts, failure + failure);
}

TEST(Commands, ZoomAsFarAsTheFileAllows) {
    Program program; // five times
    for (const int zoom : {2, 5, 1}) {
        program.Trigger(QString("Zoom%1Menu").arg(zoom));
        EXPECT_EQ(program.Engine().GetImageSize().width, zoom * program.Find("mainView")->width());
        for (const int factor : {1, 2, 5, 10, 20, 50, 100}) {
            const auto* const item = program.Find<QAction>(QString("Zoom%1Menu").arg(factor));
            EXPECT_EQ(std::pair(item->isEnabled(), item->isChecked()),
                      std::pair(factor <= 5, factor == zoom));
        }
    }
}

TEST(Commands, PlayAndStop) {
    Program program(SilentWav(60));
    for (const char* const command : {"PlayButton", "StopButton", "PlayOrStopMenu"}) {
        program.Trigger(command);
        EXPECT_EQ(program.Engine().playing, command != std::string("StopButton"));
        EXPECT_EQ(program.Enabled(), program.Engine().playing ? "Stop " : "Play ");
    }
    for (const char* const name : {"mainView", "HistoryOutlineView"}) {
        for (const bool isPlaying : {false, true}) {
            QTest::keyClick(program.Find(name), Qt::Key_Space);
            QKeyEvent heldDown(QEvent::KeyPress, Qt::Key_Space, {}, " ", true);
            QCoreApplication::sendEvent(program.Find(name), &heldDown);
            EXPECT_EQ(program.Engine().playing, isPlaying) << name;
        }
    }
    program.Engine().SetCurrentPosition(program.Engine().length - 2'000);
    Await([&] { return program.Enabled() == "Play "; }); // said by the audio library's thread
    program.Trigger("BeginButton");
    program.Trigger("PlayButton");
    std::thread([&] { program.delegate.EnablePlayStopButton(false); }).join(); // comes too late
    QCoreApplication::processEvents();
    EXPECT_EQ(program.Enabled(), "Stop ");
}

TEST(Commands, ThatEditOrSelectEndPlaybackFirst) {
    for (const QString command : {"CutExtMenu", "CutDelMenu", "SplitMenu", "CutUndoMenu"}) {
        EditedProgram program;
        program.Trigger("PlayButton");
        program.Trigger(command);
        EXPECT_TRUE(program.Enabled().starts_with("Play ")) << command.toStdString();
        QTest::keyClick(program.Find("mainView"), Qt::Key_Space);
        EXPECT_TRUE(program.Engine().playing) << command.toStdString();
    }
}

TEST(Commands, ASplitThatFailsGoesBackToWhatWasToBeSplit) {
    EditedProgram program;
    const std::string before = program.State();
    std::filesystem::create_directory(program.Engine().MakeTargetPath("1-2"));
    program.Trigger("SplitMenu");
    EXPECT_EQ(program.State(), "0 4000 1000 2000 #-1"); // from its beginning, with its marks
    EXPECT_EQ(program.Engine().GetWaveContext()->GetSize().width,
              program.Find("mainView")->width());
    program.Trigger("CutDelMenu");
    EXPECT_EQ(program.State(), "1000 3000 -1 -1 #-1-1");
}

TEST(Commands, SayWhatTheyDidNotFindAndGoNowhereOutside) {
    Program program;
    program.Engine().thresholdTime = 3.0F;
    program.Trigger("DetectButton");
    auto* const message = program.Find<QLabel>("messageLabel");
    EXPECT_TRUE(message->text().startsWith("無音部分は見つかりませんでした"));
    EXPECT_TRUE(message->text().contains("0.001") && message->text().contains("3"));
    program.Trigger("LastButton");
    EXPECT_EQ(message->text(), "");
    program.delegate.goAtPosition(-0.5);
    EXPECT_EQ(program.Engine().GetCurrentPosition(), 0);
}

TEST(Commands, TellWhereTheySavedAndWhyTheyFailed) {
    EditedProgram program;
    auto* const message = program.Find<QLabel>("messageLabel");
    for (const QString command :
         {"SaveRangeMenu", "SaveMenu", "SaveRangeFinishedMenu", "SaveFinishedMenu"}) {
        program.Trigger(command);
        EXPECT_TRUE(message->text().endsWith("out.wav")) << message->text().toStdString();
        program.desktop.answer = program.folder.Path("no/folder.wav");
        program.Trigger(command);
        EXPECT_TRUE(message->text().startsWith("ファイルを作成できません"));
        program.desktop.answer = program.folder.Path("out.wav");
    }
    EXPECT_NE(program.delegate.ObjectionTo(program.path), "");
    EXPECT_EQ(program.delegate.ObjectionTo(program.desktop.answer), "");
}

TEST(Commands, TellWhatFinishingLeavesAsItWas) {
    const std::string chapter = std::string("CHAP\0\0\0\4\0\0", 10) + "here";
    const std::string tag =
        std::string("ID3\3\0\0\0\0\0", 9) + static_cast<char>(chapter.size()) + chapter;
    const std::string clip = std::string(KLIPRA_CLIPS) + "/joint-stereo-44100.mp3";
    Program program(tag + TemporaryFolder::Read(clip), "a song.mp3");
    program.desktop.answer = program.folder.Path("out.mp3");
    program.Trigger("SaveRangeFinishedMenu", 88'200, 352'800);
    EXPECT_EQ(program.Find<QLabel>("messageLabel")->text().toStdString(),
              "タグCHAPは元のファイルのままです / 保存しました: " + program.desktop.answer);
    program.Trigger("CutDelButton", 88'200, 352'800);
    program.Trigger("SaveFinishedMenu");
    EXPECT_TRUE(program.Engine().histories.back().saved);
    EXPECT_TRUE(program.Find<QLabel>("messageLabel")->text().contains("CHAP"));
    program.Trigger("SaveMenu");
    EXPECT_FALSE(program.Find<QLabel>("messageLabel")->text().contains("CHAP"));
}

TEST(LongWork, LeavesTheWindowAliveAndIsCancelledByEscapeByItsButtonAndByClosing) {
    EditedProgram program;
    const std::string enabled = program.Enabled();
    auto* const cancel = program.Find<QAbstractButton>("cancelButton");
    const std::function<void()> ways[] = {
        [&] { QTest::keyClick(program.Find("HistoryOutlineView"), Qt::Key_Escape); },
        [&] { QTest::mouseClick(cancel, Qt::LeftButton); },
        [&] { program.delegate.GetWindow()->close(); }};
    for (const std::function<void()>& way : ways) {
        std::atomic<bool> isToEnd{false};
        BackgroundWork work([&] { isToEnd.wait(false); });
        int ticks = 0;
        QTimer timer;
        timer.callOnTimeout([&] {
            ++ticks;
            if (cancel->isVisible() && !work.IsCancelled()) {
                EXPECT_EQ(program.Enabled(), "");
                QTest::keyClick(program.Find("mainView"), Qt::Key_Space);
                QTest::mouseClick(program.Find("waveView"), Qt::LeftButton, {}, QPoint(9, 9));
                EXPECT_FALSE(program.Engine().playing);
                way();
            }
            if (work.IsCancelled()) {
                isToEnd = true;
                isToEnd.notify_all();
            }
        });
        timer.start(10);
        program.desktop.choice = 0; // not to quit
        program.delegate.AwaitWork(work);
        EXPECT_TRUE(work.IsCancelled() && ticks > 1);
        EXPECT_EQ(program.Enabled(), enabled);
        EXPECT_FALSE(cancel->isVisible());
    }
    program.desktop.texts.clear();
    Await([&] { return !program.desktop.texts.empty(); }); // the question that closing asks
    EXPECT_TRUE(program.delegate.GetWindow()->isVisible());
}

TEST(LongWork, ASearchWaitsForTheLevelsAndCanBeGivenUp) {
    Program program(Wav(Samples(8000 * 3600 * 3))); // three hours
    const auto& wave = program.Engine().GetWaveContext();
    const auto isScanning = [&] { return wave->GetFinishedColumns() < wave->GetSize().width; };
    auto* const cancel = program.Find<QAbstractButton>("cancelButton");
    const std::function<void()> ways[] = {
        [&] { QTest::keyClick(program.delegate.GetWindow(), Qt::Key_Escape); },
        [&] { cancel->click(); }, [] {}};
    for (const std::function<void()>& way : ways) {
        program.Engine().sceneChangePositions = {7};
        std::filesystem::last_write_time(program.path,
                                         std::filesystem::file_time_type::clock::now());
        program.Engine().Zoom(1); // of a file that may be another one now
        program.Trigger("DetectButton");
        program.Trigger("DetectButton");
        if (isScanning()) {
            EXPECT_TRUE(cancel->isVisible());
            way();
        }
        program.AwaitScan();
        Await([&] { return !cancel->isVisible(); });
    }
    Await([&] { return program.Engine().sceneChangePositions == std::vector{0ULL}; });
}

TEST(Commands, AnEntryThatCannotBeLoadedShowsNoOther) {
    EditedProgram program;
    std::filesystem::resize_file(program.path, 40);
    program.Trigger("CutUndoMenu");
    EXPECT_FALSE(program.Engine().GetWaveContext());
    EXPECT_EQ(program.desktop.texts, "コンテンツのロードに失敗しました。");
}

TEST(Commands, AreHarmlessWithoutAStream) {
    Program program("no audio");
    for (QAction* const item : program.delegate.GetWindow()->findChildren<QAction*>()) {
        item->setEnabled(true);
        item->trigger();
    }
    EXPECT_EQ(program.Engine().histories.size(), 1);
}

} // namespace
