#include "tests/adaptor/SessionWindow.h"
#include "tests/support/AlertRecorder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/// How often a session is killed. The environment may ask for more: KLIPRA_KILLS=10000.
int KillCount() {
    const char* const wanted = std::getenv("KLIPRA_KILLS"); // NOLINT(concurrency-mt-unsafe)
    return wanted == nullptr ? 100 : std::stoi(wanted);
}

/// Sessions that are killed at any moment, one after the other, each of which restores what the one
/// before has left.
class Kills : public testing::Test {
protected:
    /// In a process of its own, until that is killed.
    void Work(unsigned int seed) {
        AlertRecorder person;
        person.choice = 1;
        std::mt19937 random(seed);
        SessionWindow window(m_path, m_journals, FormatType::WAV);
        if (!MayComeBack(window.Describe())) {
            std::ofstream(m_failures, std::ios::app) << seed << ": not a state that it had:\n"
                                                     << window.Describe();
        }
        const auto tell = [&] {
            std::ofstream(m_states, std::ios::app) << "new state\n" + window.Describe();
        };
        tell();
        window.delegate.onWork = [&](BackgroundWork&) { tell(); };
        for (;;) {
            person.answer = m_folder.Path("saved-" + std::to_string(random() % 3) + ".wav");
            window.EditSomehow(random);
        }
    }

    /// The labels of a state's entries, and what tells their bytes from others.
    static std::map<std::string, std::string> EntriesOf(const std::string& state) {
        std::map<std::string, std::string> entries;
        std::istringstream lines(state);
        for (std::string line; std::getline(lines, line);) {
            entries[line.substr(0, line.find_first_of(" |"))] =
                line.substr(line.rfind('|', line.size() - 2));
        }
        return entries;
    }

    /// Whether the one is the other, or what one more edit has made of it.
    static bool IsNext(const std::string& state, const std::string& before) {
        const auto entries = EntriesOf(state);
        const std::size_t last = state.rfind('\n', state.size() - 2) + 1;
        const std::string edited = state.substr(last, state.find_first_of(" |", last) - last);
        const std::string parent = edited.substr(0, edited.rfind('-'));
        // Only what was below the edited entry may be gone, and only the new one may be new.
        return entries.size() > 1 &&
               std::ranges::all_of(EntriesOf(before),
                                   [&](const auto& entry) {
                                       return entry.first.starts_with(parent + "-") ||
                                              entries.contains(entry.first);
                                   }) &&
               std::ranges::all_of(entries, [old = EntriesOf(before), &edited](const auto& entry) {
                   const auto known = old.find(entry.first);
                   return entry.first == edited ||
                          (known != old.end() && known->second == entry.second);
               });
    }

    /// Whether it is one that the journal may have held when the last session was killed.
    bool MayComeBack(const std::string& state) const {
        std::vector<std::string> states;
        std::istringstream all(TemporaryFolder::Read(m_states));
        for (std::string line; std::getline(all, line);) {
            if (line == "new state" || states.empty()) {
                states.emplace_back();
            }
            states.back() += line == "new state" ? "" : line + "\n";
        }
        // What has been told twice is in the journal, as work has begun since.
        for (std::size_t i = states.size(); i-- > 0;) {
            if (state == states[i] || IsNext(state, states[i])) {
                return true;
            }
            if (i > 0 && states[i] == states[i - 1]) {
                // But nothing is, marks of the opened file neither, before the first edit.
                return EntriesOf(states[i]).size() == 1 && EntriesOf(state).size() == 1;
            }
        }
        return states.empty();
    }

    void ExpectWhole() const {
        EXPECT_EQ(TemporaryFolder::Read(m_path), m_bytes);
        EXPECT_EQ(TemporaryFolder::Read(m_failures), "");
        for (int i = 0; i < 3; ++i) {
            const std::string saved =
                TemporaryFolder::Read(m_folder.Path("saved-" + std::to_string(i) + ".wav"));
            std::uint32_t size = 0;
            if (saved.size() >= 44) {
                std::memcpy(&size, saved.data() + 40, sizeof size);
            }
            EXPECT_TRUE(saved.empty() || saved.size() == size + 44U) << saved.size();
        }
    }

    const TemporaryFolder m_folder;
    const std::string m_bytes = Wav(Samples(80'000, 77));
    const std::string m_path = m_folder.Write("a song.wav", m_bytes);
    const std::string m_journals = m_folder.Path("state/klipra/sessions");
    const std::string m_states = m_folder.Path("states"); // every one that a session has had
    const std::string m_failures = m_folder.Path("failures");
};

TEST_F(Kills, AtAnyMomentLeaveWholeFilesAndAStateThatComesBack) {
    std::mt19937 random(1);
    std::set<std::string> prefixes; // of what the killed may have left
    for (int i = 0; i < KillCount() && !HasFailure(); ++i) {
        const pid_t child = fork();
        if (child == 0) {
            Work(static_cast<unsigned int>(i));
        }
        usleep(static_cast<useconds_t>(random() % 120'000));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        ExpectWhole();
        prefixes.insert("orvane.Klipra-" + std::to_string(child) + "-");
        prefixes.insert(".klipra-" + std::to_string(child));
    }
    {
        AlertRecorder person;
        person.choice = 1;
        SessionWindow window(m_path, m_journals, FormatType::WAV);
        EXPECT_TRUE(window.isRestored && window.adaptor.histories.size() > 1);
        window.adaptor.EndSession();
    }
    for (const std::string& folder : {std::string("/tmp"), m_folder.Path(""), m_journals}) {
        for (const auto& entry : fs::directory_iterator(folder)) {
            const std::string name = entry.path().filename();
            EXPECT_TRUE(std::ranges::none_of(prefixes, [&](const std::string& prefix) {
                return name.starts_with(prefix);
            })) << entry.path();
        }
    }
    EXPECT_TRUE(fs::is_empty(m_journals));
}

} // namespace
