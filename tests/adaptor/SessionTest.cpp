#include "adaptor/TemporaryFiles.h"
#include "platform/FileReplacement.h"
#include "platform/LockFile.h"
#include "platform/SyncFiles.h"
#include "tests/adaptor/SessionWindow.h"
#include "tests/support/AlertRecorder.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/Mp3Builder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <random>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

class Sessions : public testing::Test {
protected:
    explicit Sessions(FormatType format = FormatType::WAV)
        : m_format(format),
          m_path(m_folder.Write("a song", format == FormatType::WAV
                                              ? Wav(Samples(80'000, 77))
                                              : Mp3Builder().Frames(400).Bytes())) {}
    void TearDown() override {
        SessionWindow::onWork = [](BackgroundWork&) {};
    }

    /// What a window does that then is killed, in a process of its own.
    /// @return what was left of its state: the work's result
    std::string Die(const std::function<std::string(SessionWindow&)>& work, int answer = -1) {
        const std::string result = m_folder.Path("result");
        const pid_t child = fork();
        if (child == 0) {
            AlertRecorder person;
            person.choice = answer;
            person.answer = m_folder.Path("saved");
            SessionWindow window(m_path, m_journals, m_format);
            m_folder.Write("result", work(window));
            raise(SIGKILL);
        }
        waitpid(child, nullptr, 0);
        return TemporaryFolder::Read(result);
    }
    std::string DieAfterCuts(int count, int answer = -1) {
        return Die(
            [=](SessionWindow& window) {
                for (int i = 0; i < count; ++i) {
                    EXPECT_TRUE(window.Cut(16'000, 32'000));
                }
                return window.Describe();
            },
            answer);
    }

    /// A window that is asked and gets this answer.
    std::unique_ptr<SessionWindow> Start(int answer) {
        m_person.texts.clear();
        m_person.choice = answer;
        return std::make_unique<SessionWindow>(m_path, m_journals, m_format);
    }
    bool WasAsked() const { return m_person.texts == "前回の編集が残っています。復元しますか。"; }

    std::vector<fs::path> Journals() const {
        std::vector<fs::path> found;
        for (const auto& entry : fs::directory_iterator(m_journals)) {
            if (entry.path().extension() == ".json") {
                found.push_back(entry.path());
            }
        }
        return found;
    }

    const FormatType m_format;
    const TemporaryFolder m_folder;
    const std::string m_path;
    const std::string m_journals = m_folder.Path("state/klipra/sessions");
    AlertRecorder m_person;
};

class AnySession : public Sessions, public testing::WithParamInterface<int> {
protected:
    AnySession() : Sessions(GetParam() % 2 == 0 ? FormatType::WAV : FormatType::MP3) {}
};

TEST_P(AnySession, ComesBackWithEveryEntryMarkAndByte) {
    const std::string before = Die([](SessionWindow& window) {
        std::mt19937 random(static_cast<unsigned int>(GetParam()));
        for (int i = 0; i < 30; ++i) {
            window.EditSomehow(random);
        }
        return window.Describe();
    });
    auto window = Start(1);
    EXPECT_TRUE(WasAsked() && window->isRestored);
    EXPECT_TRUE(window->Describe() == before) << window->Describe().size();
    EXPECT_EQ(Journals().size(), 1U);
    EXPECT_EQ(fs::status(Journals().front()).permissions(), fs::perms(0600));
    EXPECT_EQ(fs::status(m_journals).permissions(), fs::perms(0700));
    window->adaptor.EndSession();
    window.reset();
    EXPECT_TRUE(fs::is_empty(m_journals));
}

INSTANTIATE_TEST_SUITE_P(Random, AnySession, testing::Range(0, 6));

TEST_F(Sessions, AreAskedForUntilAnsweredAndEndWithAnOrderlyEndOnly) {
    Start(1)->adaptor.EndSession();
    EXPECT_TRUE(!WasAsked() && fs::is_empty(m_journals)) << "nothing was edited";
    const std::string before = DieAfterCuts(3);
    for (const int answer : {-1, 1, 1}) { // dismissed; then restored, and told to end each time
        const auto window = Start(answer);
        EXPECT_TRUE(WasAsked());
        EXPECT_EQ(window->adaptor.histories.size(), answer == 1 ? 4U : 1U);
        EXPECT_TRUE(answer != 1 || window->Describe() == before);
    }
    EXPECT_EQ(Start(0)->adaptor.histories.size(), 1U);
    Start(1);
    EXPECT_FALSE(WasAsked());
    EXPECT_TRUE(fs::is_empty(m_journals));
}

TEST_F(Sessions, OfLivingWindowsAreTheirOwnAndEachOfTheDeadIsOffered) {
    // In a process of its own: one that has threads is not to be forked.
    const std::string ready = m_folder.Path("ready");
    const pid_t living = fork();
    if (living == 0) {
        const auto one = Start(1);
        EXPECT_TRUE(one->Cut(0, 16'000));
        m_folder.Write("ready", "");
        for (;;) {
            pause();
        }
    }
    while (!fs::exists(ready) && waitpid(living, nullptr, WNOHANG) == 0) {
        usleep(1000);
    }
    const std::string two = DieAfterCuts(2, 1);
    EXPECT_EQ(two.find("#-1-1|#-1"), two.rfind("#-1-1|")) << "not upon the first's cut";
    kill(living, SIGKILL);
    waitpid(living, nullptr, 0);
    EXPECT_EQ(Journals().size(), 2U);
    EXPECT_EQ(Start(0)->adaptor.histories.size(), 1U);
    EXPECT_TRUE(WasAsked());
    const auto window = Start(1);
    EXPECT_TRUE(WasAsked());
    EXPECT_EQ(window->adaptor.histories.size(), Journals().empty() ? 0U : 2U);
}

TEST_F(Sessions, KilledWhileTheyAreRestoredAreWholeTheNextTime) {
    const std::string before = DieAfterCuts(4);
    for (const int last : {1, 2, 4}) {
        SessionWindow::onWork = [works = 0, last](BackgroundWork&) mutable {
            if (++works == last) {
                raise(SIGKILL);
            }
        };
        Die([](SessionWindow&) { return ""; }, 1);
        EXPECT_EQ(Journals().size(), 1U);
    }
    SessionWindow::onWork = [](BackgroundWork&) {};
    EXPECT_EQ(Start(1)->Describe(), before);
    SessionWindow::onWork = [works = 0](BackgroundWork& work) mutable {
        if (++works == 3) {
            work.Cancel();
        }
    };
    const auto window = Start(1);
    EXPECT_TRUE(!window->isRestored && window->adaptor.GetLastFailure().IsCancelled());
    EXPECT_TRUE(window->adaptor.histories.size() >= 3U && window->adaptor.channel != 0);
    EXPECT_TRUE(before.starts_with(window->Describe().substr(0, 20)));
}

TEST_F(Sessions, ThatAreNotAsTheyWereWrittenAreNeverOffered) {
    DieAfterCuts(2);
    const std::string journal = Journals().front();
    const std::string text = TemporaryFolder::Read(journal);
    const auto replaced = [&](const std::string& from, const std::string& to) {
        EXPECT_NE(text.find(from), std::string::npos) << from;
        return std::string(text).replace(text.find(from), from.size(), to);
    };
    const auto expectIgnored = [&](const std::string& what) {
        EXPECT_TRUE(Start(1)->adaptor.histories.size() == 1 && !WasAsked()) << what;
    };
    for (const std::string& wrong : {std::string(),
                                     text.substr(0, text.size() / 2),
                                     std::string(2'000'000, '['),
                                     replaced("{", "[") + "]",
                                     replaced("\"version\":1", "\"version\":2"),
                                     replaced("\"parent\":0", "\"parent\":1"),
                                     replaced("\"parent\":-1", "\"parent\":-2"),
                                     replaced("\"parent\":0", "\"parent\":4294967295"),
                                     replaced("\"remove\"", "\"../x\""),
                                     replaced("\"label\":1", "\"label\":2"),
                                     replaced("\"label\":1", "\"label\":\"/x\""),
                                     replaced("\"range\":[16000,", "\"range\":[-16000,"),
                                     replaced("\"range\":[16000,", "\"range\":[null,"),
                                     replaced("\"marks\":[16000,", "\"marks\":[1e3,"),
                                     replaced("\"marks\":[", "\"marks\":[0,"),
                                     replaced("\"savedName\":\"\"", "\"savedName\":\"-1\""),
                                     replaced("\"steps\"", "\"x\""),
                                     replaced("\"inode\":", "\"inode\":1"),
                                     replaced("\"size\":", "\"size\":1"),
                                     replaced("\"modified\":", "\"modified\":1"),
                                     text + std::string(5'000'000, ' ')}) {
        std::ofstream(journal, std::ios::binary) << wrong;
        expectIgnored(wrong.substr(0, 300));
    }
    fs::remove(journal);
    fs::create_symlink(m_folder.Write("elsewhere", text), journal);
    expectIgnored("a link");
    fs::remove(journal);
    ASSERT_EQ(mkfifo(journal.c_str(), 0600), 0);
    expectIgnored("a pipe");
    fs::remove(journal);
    std::ofstream(journal) << text;
    const auto time = fs::last_write_time(m_path);
    fs::last_write_time(m_path, time + 1us);
    expectIgnored("the file has changed");
    fs::last_write_time(m_path, time);
    EXPECT_EQ(Start(-1)->adaptor.histories.size(), 1U);
    EXPECT_TRUE(WasAsked()) << "now it is again as it was";
    fs::last_write_time(journal, fs::file_time_type::clock::now() - 24h * 31);
    expectIgnored("too old");
    EXPECT_TRUE(fs::is_empty(m_journals));
}

TEST_F(Sessions, KeepWhatCameBeforeAStepThatFails) {
    const std::string before = Die([](SessionWindow& window) {
        window.adaptor.cutPositions = {16'000, 32'000};
        EXPECT_TRUE(window.adaptor.Split());
        return window.Describe();
    });
    const auto window = [&] {
        const FileSizeLimit limit(100'000); // too little for the last piece
        return Start(1);
    }();
    EXPECT_TRUE(WasAsked() && !window->isRestored);
    EXPECT_EQ(window->adaptor.histories.size(), 3U);
    EXPECT_NE(window->adaptor.channel, 0U);
    EXPECT_TRUE(window->Cut(0, 1600));
    EXPECT_EQ(Journals().size(), 1U);
}

TEST_F(Sessions, WithoutAPlaceForTheirJournalWorkAndSaySoOnce) {
    m_folder.Write("state", "no folder");
    const auto window = Start(1);
    EXPECT_TRUE(window->Cut(0, 16'000) && window->Cut(0, 16'000));
    EXPECT_EQ(window->delegate.timesTold, 1);
}

TEST_F(Sessions, WhoseJournalIsNotOnTheDiskWhenItIsClosedSaySo) {
    const auto window = Start(1);
    {
        const FileSizeLimit diskIsFull(100); // which the edit just fits on
        EXPECT_TRUE(window->Cut(0, window->adaptor.length - 16));
    }
    EXPECT_EQ(window->delegate.timesTold, 1);
    EXPECT_EQ(Journals().size(), 0U);
}

TEST(Leftovers, OfTheDeadGoAndNothingElseDoes) {
    const TemporaryFolder folder;
    const auto path = [&](const std::string& name) { return folder.Write(name, "bytes"); };
    const std::vector<std::string> dead = {
        path("orvane.Klipra-4242-1-1.wav"), path("orvane.Klipra-4242-1~0123456789abcdef.mp3"),
        path(".klipra-4242.lock"), path("orvane.Klipra-44-1.mp3"), path(".klipra-77-12345")};
    const std::vector<std::string> others = {path("orvane.Klipra-43-1.wav"),
                                             path("orvane.Klipra-4243-1.mp3"),
                                             path("orvane.Klipra-4242-1.txt"),
                                             path("orvane.Klipra-4242-.x.wav"),
                                             path("x-orvane.Klipra-4242-1.mp3"),
                                             path("orvane.Klipra-45-1.mp3"),
                                             path(".klipra-77-12345-old"),
                                             path(".klipra-77-x"),
                                             path(".klipra-7712345"),
                                             path("1.mp3")};
    const std::string link = folder.Path("orvane.Klipra-4242-2.wav");
    fs::create_symlink(others.front(), link);
    const LockFile living(folder.Path(".klipra-4243.lock"));
    {
        const auto held = FolderHold::Of(folder.Path("."));
        FileReplacement::RemoveAbandoned(folder.Path("."));
        EXPECT_TRUE(fs::exists(dead.back())) << "somebody writes there";
    }
    FileReplacement::RemoveAbandoned(folder.Path("."));
    TemporaryFiles(folder.Path("."), getpid()).DeleteThoseOfTheDead({44, 45, 4243}, {45, 4242});
    for (const std::string& file : dead) {
        EXPECT_FALSE(fs::exists(file)) << file;
    }
    for (const std::string& file : others) {
        EXPECT_TRUE(fs::exists(file)) << file;
    }
    EXPECT_TRUE(fs::is_symlink(link));
}

} // namespace
