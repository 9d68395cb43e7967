#include "app/TerminalAnswer.h"
#include "tests/app/Program.h"

#include <QDropEvent>
#include <QMenu>
#include <QMimeData>

namespace {

TEST(Launch, RefusedShowsWhyAndEnds) {
    const TemporaryFolder folder;
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"klipra"}, "ファイルが指定されていません。"},
        {{"klipra", "/no/%s.wav"}, "ファイル '/no/%s.wav' は存在しません。"},
        {{"klipra", folder.Write("mp3", "")}, "サポート形式は、mp3とwavのみです。"}};
    for (const auto& [arguments, text] : cases) {
        const AlertRecorder desktop;
        AppDelegate delegate;
        const QSignalSpy terminate(&delegate, &AppDelegate::terminate);
        delegate.applicationDidFinishLaunching(arguments);
        EXPECT_EQ(desktop.texts, text);
        EXPECT_EQ(terminate.count(), 1);
    }
}

TEST(Launch, OpensWhatIsChosenAndOtherFilesInWindowsOfTheirOwn) {
    {
        AlertRecorder desktop;
        AppDelegate delegate;
        QSignalSpy terminate(&delegate, &AppDelegate::terminate);
        delegate.applicationDidFinishLaunching({"klipra", "--choose"});
        ASSERT_EQ(terminate.count(), 1); // cancelled
        EXPECT_EQ(terminate.at(0).at(0).toInt(), 0);
        EXPECT_EQ(desktop.texts, "");
        const TemporaryFolder folder;
        desktop.answer = folder.Write("chosen.wav", Wav(Song()));
        delegate.applicationDidFinishLaunching({"klipra", "--choose"});
        EXPECT_EQ(delegate.GetWindow()->windowTitle(), "chosen.wav");
    }
    Program program;
    program.desktop.answer = "/x/other.mp3";
    program.Trigger("OpenMenu");
    EXPECT_EQ(program.desktop.question + "/a song.wav", program.path); // begins in its folder
    auto* const recent = program.Find<QMenu>("RecentMenu");
    Q_EMIT recent->aboutToShow();
    EXPECT_EQ(recent->actions().at(0)->text(), "a song.wav");
    EXPECT_FALSE(recent->actions().at(1)->isEnabled()); // is gone by now
    recent->actions().at(0)->trigger();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile("/x/é 1.wav"), QUrl("http://x/y.mp3")});
    QDragEnterEvent enter({}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(program.delegate.GetWindow(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop({}, Qt::CopyAction, &data, Qt::LeftButton, {});
    QCoreApplication::sendEvent(program.delegate.GetWindow(), &drop);
    EXPECT_EQ(program.desktop.opened, "/x/other.mp3|" + program.path + "|/x/é 1.wav|");
    EXPECT_EQ(TerminalAnswer({"klipra", "x.mp3"}) + TerminalAnswer({"klipra"}), "");
    EXPECT_TRUE(TerminalAnswer({"klipra", "--help"}).starts_with("Usage: klipra FILE\n"));
    EXPECT_TRUE(TerminalAnswer({"klipra", "--version"}).starts_with("Klipra "));
}

TEST(Quit, AsksOnceSomethingWasEdited) {
    for (const QString control : {"", "CloseMenu", "QuitMenu"}) {
        Program program;
        const QSignalSpy terminate(&program.delegate, &AppDelegate::terminate);
        const auto requestsAfter = [&](int choice) {
            program.desktop.choice = choice;
            control.isEmpty() ? void(program.delegate.GetWindow()->close())
                              : program.Trigger(control);
            return terminate.count();
        };
        EXPECT_EQ(requestsAfter(0), 1);
        program.delegate.GetWindow()->show();
        program.Trigger("CutExtButton", 0, 16'000);
        EXPECT_EQ(requestsAfter(-1) + requestsAfter(0), 2);
        EXPECT_TRUE(program.delegate.GetWindow()->isVisible());
        EXPECT_EQ(requestsAfter(1), 2);
    }
}

/// A session of a desktop that ends.
struct EndingSession {
    bool allowsInteraction() const { return mayAsk; }
    void release() { told += "release "; }
    void cancel() { told += "cancel "; }
    bool mayAsk = true;
    std::string told{};
};

TEST(Quit, WithTheSessionOfTheDesktopAsksWhereItMay) {
    Program program;
    program.Trigger("CutExtButton", 0, 16'000);
    for (const auto& [mayAsk, choice, expected] :
         {std::tuple(true, 1, "release "), {true, 0, "release cancel "}, {false, 0, ""}}) {
        program.desktop.choice = choice;
        EndingSession session{mayAsk};
        program.delegate.sessionShouldEnd(session);
        EXPECT_EQ(session.told, expected);
        EXPECT_EQ(std::exchange(program.desktop.texts, "").empty(), !mayAsk);
    }
}

} // namespace
