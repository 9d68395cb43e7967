#include "app/LaunchCheck.h"
#include "app/TerminationSignals.h"
#include "tests/app/Program.h"

#include <QWindow>

#include <csignal>
#include <filesystem>

namespace {

TEST(CheckLaunch, TellsTheFirstThingThatForbidsIt) {
    using Answer = std::variant<LaunchFile, LaunchRefusal>;
    const LaunchRefusal noFile{"ファイルが指定されていません。"};
    const LaunchRefusal wrongVersion{"An incorrect version of BASS.DLL"};
    const LaunchRefusal wrongFormat{"サポート形式は、mp3とwavのみです。"};
    const std::tuple<const char*, std::uint32_t, Answer> cases[] = {
        {"no %s", 0, LaunchRefusal{"ファイル 'no %s' は存在しません。"}},
        {"a.ogg", 0x02030000, wrongVersion},
        {"a.wav", 0x02050000, wrongVersion},
        {"x.ogg", 0x02040000, wrongFormat},
        {"a.mp3/mp3", 0x02040000, wrongFormat},
        {"x.MP3", 0x02040000, LaunchFile{FormatType::MP3, "x.MP3"}},
        {"a.Wav", 0x0204FFFF, LaunchFile{FormatType::WAV, "a.Wav"}}};
    const auto exists = [](const std::string& path) { return path != "no %s"; };
    for (const auto& [path, version, answer] : cases) {
        EXPECT_EQ(CheckLaunch({"klipra", path, "b.mp3"}, exists, version), answer);
    }
    EXPECT_EQ(CheckLaunch({"klipra"}, exists, 0), Answer(noFile));
}

TEST(Launch, RefusedShowsWhyAndEnds) {
    const AlertRecorder desktop;
    AppDelegate delegate;
    const QSignalSpy terminate(&delegate, &AppDelegate::terminate);
    delegate.applicationDidFinishLaunching({"klipra", "/no/file.wav"});
    EXPECT_EQ(desktop.texts, "ファイル '/no/file.wav' は存在しません。");
    EXPECT_EQ(terminate.count(), 1);
    EXPECT_EQ(delegate.GetKlipra(), nullptr);
}

TEST(Launch, OpensFilesOfAnyName) {
    for (const char* const name : {"two  blanks.wav", "無音 ～.wav", "%s%n.wav", "-x.wav",
                                   "[*] x.wav", "\"q' <b>&amp;.wav"}) {
        Program program(SilentWav(1), name);
        EXPECT_EQ(program.delegate.GetWindow()->windowHandle()->title(), name);
        EXPECT_EQ(program.State(), std::string("0 1000 -1 -1 # ") + name);
    }
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
        program.desktop.answer = program.folder.Path("out.wav");
        program.Trigger("SaveButton");
        EXPECT_EQ(requestsAfter(-1) + requestsAfter(0), 2);
        EXPECT_TRUE(program.delegate.GetWindow()->isVisible());
        EXPECT_EQ(requestsAfter(1), 2);
        const std::string question = "編集内容が保存されていません。終了して良いですか。";
        EXPECT_EQ(program.desktop.texts, question + question + question);

        const std::string temporary = program.Engine().histories[1].path;
        program.delegate.applicationWillTerminate();
        EXPECT_FALSE(std::filesystem::exists(temporary));
    }
}

TEST(TerminationSignals, ArriveAsOnesOfTheToolkit) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const TerminationSignals signals;
        const QSignalSpy requests(&signals, &TerminationSignals::terminationRequested);
        std::raise(signal);
        Await([&] { return requests.count() == 1; });
    }
}

} // namespace
