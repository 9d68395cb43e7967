#include "adaptor/BackgroundWork.h"
#include "adaptor/KlipraMac.h"
#include "audio/bass.h"
#include "platform/Desktop.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <malloc.h>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr int kVisibleWidth = 1000; // pixels

/// Ends the program unless something is so.
void Require(bool condition, const char* what, int step) {
    if (!condition) {
        std::fprintf(stderr, "klipra-soak: step %d: %s\n", step, what);
        std::_Exit(1);
    }
}

/// What tells the content of a file from any other.
std::size_t Digest(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::hash<std::string>()({std::istreambuf_iterator<char>(file), {}});
}

/// Lays the waveform out as a window does, and shows nothing. Cancels some of the work.
class SilentDelegate : public KlipraMacDelegate {
public:
    KlipraMac* klipra = nullptr;

    void Zoom(int factor) override {
        klipra->SetWaveSize(factor * kVisibleWidth);
        klipra->CreateWaveImage();
    }
    void setNeedRefresh(int count) override {
        m_needRefresh = count;
        m_needRefresh.notify_all();
    }
    void refreshHistoryOutlineView(int id) override { lastRefreshed = id; }

    void AwaitWork(BackgroundWork& work) override {
        constexpr unsigned int kOneIn = 6;
        constexpr unsigned int kLongest = 3000; // microseconds; as long as most edits take
        if (m_random() % kOneIn == 0) {
            std::this_thread::sleep_for(std::chrono::microseconds(m_random() % kLongest));
            work.Cancel();
            m_hasCancelled = true;
        }
        work.Wait();
    }

    /// Whether work has been cancelled since the last time.
    bool TakeCancelled() { return std::exchange(m_hasCancelled, false); }

    void AwaitScan() const { m_needRefresh.wait(KlipraMac::kRefreshWhileScanning); }

    int lastRefreshed = 0;

private:
    std::atomic<int> m_needRefresh{0};
    std::minstd_rand m_random;
    bool m_hasCancelled = false;
};

/// Saves where it is told, and counts the alerts.
class ScriptedDesktop : public Desktop {
public:
    int ShowAlert(const std::string& /*headline*/, const std::string& /*text*/,
                  const std::vector<std::string>& /*buttons*/) override {
        ++alerts;
        return 0;
    }
    std::string AskOutputPath(const std::string& /*folder*/, const std::string& /*name*/,
                              const std::string& /*extension*/) override {
        return answer;
    }

    std::string answer;
    int alerts = 0;
};

/// What the history must hold.
class HistoryModel {
public:
    struct Entry {
        int parentId = 0;
        std::string name;
        bool saved = false;
        bool isShown = true; ///< in the tree
        std::vector<int> children;
        std::size_t digest = 0; ///< of its file, when it was made
    };

    void Add(int id, int parentId, const std::string& name, bool saved, std::size_t digest) {
        m_entries[id] = {parentId, name, saved, true, {}, digest};
        if (parentId != 0) {
            m_entries[parentId].children.push_back(id);
        }
    }

    void DropChildren(int id) {
        for (const int child : std::exchange(m_entries[id].children, {})) {
            m_entries[child].isShown = false;
            DropChildren(child);
        }
    }

    Entry& operator[](int id) { return m_entries.at(id); }

    std::vector<int> ShownIds() const {
        std::vector<int> ids;
        for (const auto& [id, entry] : m_entries) {
            if (entry.isShown) {
                ids.push_back(id);
            }
        }
        return ids;
    }

    void Check(KlipraMac& klipra, int step) {
        Require(klipra.histories.size() == m_entries.size(), "number of entries", step);
        for (auto& [id, entry] : m_entries) {
            const HistoryItem* const item = klipra.FindHistoryItem(id);
            Require(item != nullptr && item->name == entry.name && item->saved == entry.saved,
                    "an entry", step);
            const HistoryTreeItem* const node = klipra.FindHistoryTreeItem(id);
            Require((node != nullptr) == entry.isShown, "what the tree shows", step);
            if (node != nullptr) {
                Require(std::equal(node->children.begin(), node->children.end(),
                                   entry.children.begin(), entry.children.end(),
                                   [](const HistoryTreeItem& child, int childId) {
                                       return child.id == childId;
                                   }),
                        "the children of an entry", step);
            }
        }
    }

private:
    std::map<int, Entry> m_entries;
};

/// What the process holds of the system.
struct Holdings {
    long residentKilobytes = 0;
    long descriptors = 0;

    /// No descriptor more, and hardly more memory: a sanitizer keeps what was freed.
    bool IsAsGoodAs(const Holdings& earlier) const {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
        const bool isSanitized = true;
#else
        const bool isSanitized = false;
#endif
        return descriptors <= earlier.descriptors &&
               (isSanitized || residentKilobytes * 4 <= earlier.residentKilobytes * 5);
    }

    static Holdings Now() {
        Holdings holdings;
        std::ifstream status("/proc/self/status");
        for (std::string word; status >> word;) {
            if (word == "VmRSS:") {
                status >> holdings.residentKilobytes;
            }
        }
        holdings.descriptors = static_cast<long>(
            std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
        return holdings;
    }
};

/// A person who does one thing after another, with little rest and less of a plan.
class Soak {
public:
    Soak(const std::string& path, unsigned int seed)
        : m_path(path), m_opened(Digest(path)), m_random(seed),
          m_klipra(&m_delegate, *GetFormat(path), path, KlipraMac::Sound::Silent),
          m_savedPath((fs::temp_directory_path() / "klipra-soak-XXXXXX").string()) {
        Require(mkdtemp(m_savedPath.data()) != nullptr, "no folder to save in", 0);
        m_savedPath.append("/saved").append(fs::path(path).extension().string());
        InstallDesktop(&m_desktop);
        m_desktop.answer = m_savedPath;
        m_delegate.klipra = &m_klipra;
        m_klipra.SetDrawSize(kVisibleWidth);
        m_klipra.PushHistory("# opened", path, true, 0);
        m_model.Add(1, 0, "# opened", true, m_opened);
        Require(m_klipra.LoadPlayFile(), "the file cannot be opened", 0);
    }
    Soak(const Soak&) = delete;
    Soak& operator=(const Soak&) = delete;
    ~Soak() {
        fs::remove_all(fs::path(m_savedPath).parent_path());
        InstallDesktop(nullptr);
    }

    /// What the process holds with the opened file loaded and its waveform at zoom 1.
    Holdings HoldingsAtRest() {
        m_klipra.PlayStop();
        m_klipra.SelectHistory(1);
        m_klipra.Zoom(1);
        m_delegate.AwaitScan(); // whose decoders hold some megabytes
        BASS_KeepLevels(FALSE); // those of the last files that were measured
        BASS_KeepLevels(TRUE);
        return Holdings::Now();
    }

    int Cancelled() const { return m_cancelled; }

    void Step(int step) {
        m_step = step;
        switch (m_random() % 10) {
        case 0:
        case 1:
            Edit();
            break;
        case 2:
            Split();
            break;
        case 3:
        case 4:
            Select();
            break;
        case 5:
            m_klipra.ZoomDelta(static_cast<int>(m_random() % 41) - 20);
            break;
        case 6:
            Search();
            break;
        case 7:
            m_klipra.PlayOrStop();
            break;
        case 8:
            m_random() % 2 == 0 ? Save() : Finish();
            break;
        default:
            Move();
            break;
        }
        m_model.Check(m_klipra, m_step);
        constexpr int kStepsBetweenReadings = 50; // of all files
        if (step % kStepsBetweenReadings == 0) {
            CheckFiles();
        }
    }

private:
    void Edit() {
        SetRange();
        const int parentId = m_klipra.currentHistoryId;
        const std::string name = m_klipra.GetCurrentHistoryItemName() + "-1";
        m_delegate.TakeCancelled();
        if (m_klipra.GetDefinedCutPositionCount() == 2 && m_klipra.Cut(m_random() % 2 == 0)) {
            m_model.DropChildren(parentId);
            AddEntry(parentId, name);
        } else if (m_delegate.TakeCancelled()) {
            ++m_cancelled;
        }
    }

    void Split() {
        SetRange();
        const int parentId = m_klipra.currentHistoryId;
        const int lastId = m_klipra.lastHistoryId;
        const std::string label = m_klipra.GetCurrentHistoryItemName() + "-";
        m_delegate.TakeCancelled();
        const int alerts = m_desktop.alerts;
        const bool isSplit = m_klipra.Split();
        const bool hasFailed = m_desktop.alerts > alerts; // a piece holds no audio
        const bool isCancelled = m_delegate.TakeCancelled() && !isSplit && !hasFailed;
        if (!isSplit && !isCancelled && !hasFailed) {
            return;
        }
        m_model.DropChildren(parentId);
        for (int id = lastId + 1; id <= m_klipra.lastHistoryId; ++id) {
            AddEntry(parentId, label + std::to_string(id - lastId), id);
        }
        if (isCancelled) {
            ++m_cancelled;
            m_model.DropChildren(parentId);
            Require(m_klipra.currentHistoryId == parentId, "where a cancelled split ends", m_step);
        } else if (hasFailed) {
            m_klipra.SelectHistory(parentId); // as a window does
        }
    }

    /// Near the opened file more often than not, so that there is something left to cut.
    void Select() {
        const std::vector<int> ids = m_model.ShownIds();
        m_klipra.SelectHistory(m_random() % 3 == 0 ? 1 : ids[m_random() % ids.size()]);
        Require(m_klipra.channel != 0, "an entry's file cannot be opened", m_step);
    }

    void Search() {
        m_klipra.SearchSceanChange();
        Require(std::is_sorted(m_klipra.sceneChangePositions.begin(),
                               m_klipra.sceneChangePositions.end()),
                "the order of the scene changes", m_step);
        m_klipra.MovePositionNext();
    }

    void Save() {
        std::string path;
        m_delegate.TakeCancelled();
        const std::size_t before = Digest(m_savedPath);
        if (!m_klipra.Save(path)) {
            Require(m_delegate.TakeCancelled(), "saving", m_step);
            Require(Digest(m_savedPath) == before, "the file that was there", m_step);
            ++m_cancelled;
            return;
        }
        Require(Digest(path) == NoteSaved(path).digest, "the saved file", m_step);
    }

    HistoryModel::Entry& NoteSaved(const std::string& path) {
        Require(path == m_savedPath, "where it was saved", m_step);
        m_klipra.UpdateHistoryItem(path);
        HistoryModel::Entry& entry = m_model[m_klipra.currentHistoryId];
        entry.name.append(" ").append(fs::path(path).filename().string());
        entry.saved = true;
        return entry;
    }

    /// Where it fails, cancelled or with too little left, the file that was there stays.
    void Finish() {
        const std::size_t before = Digest(m_savedPath);
        std::string path;
        m_delegate.TakeCancelled();
        if (m_random() % 2 == 0) {
            SetRange();
            m_klipra.SaveRangeFinished();
        } else if (m_klipra.SaveFinished(path)) {
            NoteSaved(path);
            Require(fs::file_size(path) > 0, "the finished file", m_step);
        } else {
            Require(Digest(m_savedPath) == before, "the file before a finished one", m_step);
        }
        m_cancelled += m_delegate.TakeCancelled() ? 1 : 0;
    }

    void Move() {
        m_random() % 2 == 0 ? m_klipra.MovePositionLeft() : m_klipra.MovePositionRight();
        m_klipra.SetCurrentPositionInSeconds(static_cast<double>(m_random() % 100));
    }

    void SetRange() {
        for (const bool isStart : {true, false}) {
            m_klipra.SetCurrentPosition(m_random() % (m_klipra.length + 1));
            isStart ? m_klipra.SetStartPosition() : m_klipra.SetEndPosition();
        }
    }

    void AddEntry(int parentId, const std::string& name, int id = 0) {
        id = id == 0 ? m_klipra.currentHistoryId : id;
        m_model.Add(id, parentId, name, false, Digest(m_klipra.FindHistoryItem(id)->path));
        Require(m_delegate.lastRefreshed == m_klipra.lastHistoryId, "the outline", m_step);
    }

    /// Every file that can be gone back to, and the opened one, is as it was made.
    void CheckFiles() {
        Require(Digest(m_path) == m_opened, "the opened file", m_step);
        for (const int id : m_model.ShownIds()) {
            Require(Digest(m_klipra.FindHistoryItem(id)->path) == m_model[id].digest,
                    "the file of an entry", m_step);
        }
    }

    const std::string m_path;
    const std::size_t m_opened; // its digest
    std::mt19937 m_random;
    ScriptedDesktop m_desktop;
    SilentDelegate m_delegate;
    HistoryModel m_model;
    KlipraMac m_klipra;
    std::string m_savedPath;
    int m_step = 0;
    int m_cancelled = 0;
};

} // namespace

// Works on a file at random for so many steps, and checks after each that the history and all files
// are as they must be; tells what the process holds after a hundred steps and at the end.
int main(int argc, char** argv) {
    if (argc < 3) {
        std::fputs("Usage: klipra-soak FILE STEPS [SEED]\n", stderr);
        return 2;
    }
    // What threads have freed would stay in heaps of their own, and count as held.
    mallopt(M_ARENA_MAX, 1); // NOLINT(concurrency-mt-unsafe): no other thread yet
    const int steps = std::atoi(argv[2]);
    Soak soak(argv[1], argc > 3 ? static_cast<unsigned int>(std::atoi(argv[3])) : 1);
    constexpr int kWarmUp = 100;
    Holdings before;
    for (int step = 1; step <= steps; ++step) {
        soak.Step(step);
        if (step == kWarmUp) {
            before = soak.HoldingsAtRest();
        }
    }
    const Holdings after = soak.HoldingsAtRest();
    std::printf("%d steps done, %d cancelled: memory %ld -> %ld kB, descriptors %ld -> %ld\n",
                steps, soak.Cancelled(), before.residentKilobytes, after.residentKilobytes,
                before.descriptors, after.descriptors);
    return after.IsAsGoodAs(before) ? 0 : 1;
}
