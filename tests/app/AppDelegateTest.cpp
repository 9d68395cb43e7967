#include "app/ControlRules.h"
#include "tests/app/Program.h"

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

TEST(Commands, SaveTheRangeOrNothing) {
    const Samples song = Song();
    EditedProgram program;
    const std::string state = program.State() + program.Enabled();
    for (const std::string& answer : {std::string(), program.path, program.folder.Path("1.wav")}) {
        program.desktop.answer = answer;
        program.Trigger(answer.ends_with("1.wav") ? "SaveRangeMenu" : "SaveMenu");
        EXPECT_EQ(program.State() + program.Enabled(), state);
    }
    EXPECT_EQ(program.desktop.texts, "保存できませんでした。"); // over the opened file
    EXPECT_EQ(TemporaryFolder::Read(program.desktop.answer).substr(44),
              Wav({song.begin() + 8'000, song.begin() + 16'000}).substr(44));
}

TEST(Commands, CutAnMP3ToAnMP3) {
    Program program(TemporaryFolder::Read(KLIPRA_CLIPS "/vbr-xing-48000.mp3"), "x.MP3");
    const auto half = static_cast<double>(program.Engine().length / 2);
    program.Trigger("CutExtMenu", 0, program.Engine().length / 2);
    EXPECT_NEAR(static_cast<double>(program.Engine().length), half, 0.1 * half);
    program.Trigger("SaveButton");
    EXPECT_TRUE(program.desktop.question.ends_with("|x-1.mp3|mp3"));
}

TEST(Commands, ZoomAsFarAsTheFileAllows) {
    Program program;
    for (const int zoom : {2, 5, 10, 20, 50, 100, 1, 3}) { // the last one stands in no menu
        auto* const chosen = program.Find<QAction>(QString("Zoom%1Menu").arg(zoom));
        chosen == nullptr ? program.Engine().Zoom(zoom) : chosen->trigger();
        EXPECT_EQ(program.Find("waveView")->width(), zoom * program.Find("mainView")->width());
        EXPECT_EQ(program.Engine().GetImageSize().width, program.Find("waveView")->width());
        for (const int maxZoom : {0, 1, 4, 10, 99, 100}) {
            program.Engine().maxZoom = maxZoom;
            program.delegate.enableZoomMenu();
            for (const int factor : kZoomFactors) {
                const auto* const item = program.Find<QAction>(QString("Zoom%1Menu").arg(factor));
                EXPECT_EQ(item->isChecked(), factor == zoom);
                EXPECT_EQ(item->isEnabled(), factor == 1 || factor <= maxZoom);
            }
        }
    }
}

TEST(Commands, PlayAndStop) {
    Program program;
    for (const char* const command : {"PlayButton", "StopButton", "PlayOrStopMenu"}) {
        program.Trigger(command);
        EXPECT_EQ(program.Engine().playing, command != std::string("StopButton"));
        EXPECT_EQ(program.Enabled(), program.Engine().playing ? "Stop " : "Play ");
    }
    program.Engine().SetCurrentPosition(78'000);
    Await([&] { return program.Enabled() == "Play "; }); // said by the audio library's thread
}

TEST(Commands, OfKeysArriveFromTheStripAndTheHistory) {
    for (const char* const name : {"mainView", "HistoryOutlineView"}) {
        Program program;
        using Move = std::tuple<unsigned, Qt::Key, unsigned>;
        for (const auto& [from, key, to] :
             {Move{0, Qt::Key_Right, 16'000}, Move{8'000, Qt::Key_Left, 0},
              Move{72'000, Qt::Key_Right, 80'000}, Move{8'000, Qt::Key_F7, 8'000}}) {
            program.Engine().SetCurrentPosition(from);
            QTest::keyClick(program.Find(name), key);
            EXPECT_EQ(program.Engine().GetCurrentPosition(), to) << name;
        }
        for (const bool isPlaying : {true, false}) {
            QTest::keyClick(program.Find(name), Qt::Key_Space);
            QKeyEvent heldDown(QEvent::KeyPress, Qt::Key_Space, {}, " ", true);
            QCoreApplication::sendEvent(program.Find(name), &heldDown);
            EXPECT_EQ(program.Engine().playing, isPlaying) << name;
        }
    }
}

TEST(Commands, AreHarmlessWithoutAStream) {
    Program program("no audio");
    EXPECT_EQ(program.desktop.texts, "コンテンツのロードに失敗しました。");
    for (QAction* const item : program.delegate.GetWindow()->findChildren<QAction*>()) {
        item->setEnabled(true);
        item->trigger();
    }
    EXPECT_EQ(program.Engine().histories.size(), 1);
}

/// Counts the ticks of the refresh timer and the paintings of the strip.
struct RefreshCounter : QObject {
    explicit RefreshCounter(QWidget* view) : strip(view) { qApp->installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* const asTimer = qobject_cast<QTimer*>(watched);
        if (event->type() == QEvent::Timer && asTimer != nullptr && asTimer->interval() == 100) {
            timer = asTimer;
            ++ticks;
        }
        paintings += event->type() == QEvent::Paint && watched == strip ? 1 : 0;
        return false;
    }

    QWidget* const strip;
    QTimer* timer = nullptr;
    int ticks = 0, paintings = 0;
};

TEST(RefreshTimer, RedrawsAsOftenAsItIsToldThenStops) {
    Program program;
    RefreshCounter counter(program.Find("waveView"));
    const auto hasStopped = [&] { return counter.timer != nullptr && !counter.timer->isActive(); };
    Await(hasStopped);
    for (const int redraws : {2, 0, 3}) {
        counter.ticks = counter.paintings = 0;
        program.delegate.setNeedRefresh(redraws);
        program.delegate.enableTimer();
        Await(hasStopped);
        EXPECT_EQ(counter.paintings, redraws);
        EXPECT_EQ(counter.ticks, redraws + 1);
    }
    program.Find<QAction>("ScNextMenu")->setEnabled(true);
    program.Trigger("ScNextMenu"); // to nowhere
    EXPECT_EQ(counter.paintings, 3);

    program.delegate.setNeedRefresh(KlipraMac::kRefreshWhileScanning);
    program.delegate.enableTimer();
    for (const char* const command : {"SetStartMenu", "LastMenu", "BeginMenu", "PlayOrStopMenu"}) {
        program.Trigger(command); // stops no redraws
        counter.ticks = counter.paintings = 0;
        Await([&] { return counter.ticks == 3; });
        EXPECT_EQ(counter.paintings, 3) << command;
    }
}

} // namespace
