#include "tests/app/Program.h"

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

} // namespace
