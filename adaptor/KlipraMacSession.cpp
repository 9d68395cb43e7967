#include "adaptor/KlipraMac.h"
#include "adaptor/Session.h"
#include "platform/Desktop.h"

#include <algorithm>
#include <map>

namespace {

/// What saving has added to an entry's name.
std::string SavedName(const HistoryItem& item) {
    const std::size_t start = item.edit == EditKind::None
                                  ? 2 + Klipra::ExtractFilename(item.path).size()
                                  : item.name.find(' ');
    return start < item.name.size() ? item.name.substr(start) : "";
}

/// What a label adds to that of its parent.
int PieceOf(const std::string& name) {
    const std::string label = name.substr(0, name.find(' '));
    return std::stoi(label.substr(label.rfind('-') + 1));
}

} // namespace

bool KlipraMac::BeginSession(const std::string& folder) {
    m_session = std::make_unique<Session>(folder, filePath, m_temporaryFiles);
    if (!m_session->Journal().IsOpen()) {
        TellThatEditsDoNotSurvive();
    }
    if (!m_session->Left()) {
        return true;
    }
    enum Answer { No, Yes }; // anything else is none: then it is asked again next time
    const int answer =
        AskQuestion("確認", "前回の編集が残っています。復元しますか。", {"いいえ", "はい"});
    if (answer == No) {
        m_session->Left()->Remove();
    }
    const bool isRestored = answer != Yes || Restore();
    m_session->Left().reset();
    return isRestored;
}

void KlipraMac::EndSession() {
    if (m_session != nullptr) {
        m_session->Journal().Remove();
    }
}

bool KlipraMac::Restore() {
    const auto [path, file, savedName, steps] = m_session->Left()->record;
    m_session->Journal().TakeOver(std::move(*m_session->Left()));
    const int count = static_cast<int>(steps.size());
    m_isRestoring = true;
    histories.front().name += savedName;
    std::vector<int> ids; // of the entries made, by step
    while (ids.size() < steps.size()) {
        appDelegate->restoringEdits(static_cast<int>(ids.size()), count);
        const SessionStep& step = steps[ids.size()];
        const int parentId =
            step.parent < 0 ? historyRoot.id : ids[static_cast<std::size_t>(step.parent)];
        if (!RepeatEdit(parentId, step.edit, step.marks, step.range, step.piece)) {
            break;
        }
        HistoryItem& item = histories.back();
        item.saved = step.saved;
        item.name += step.savedName;
        ids.push_back(item.id);
    }
    m_isRestoring = false;
    if (ids.empty()) {
        return false;
    }
    appDelegate->refreshHistoryOutlineView(currentHistoryId);
    const bool isLoaded = LoadPlayFile();
    EnableTimer();
    EnableCutButton();
    EnableSaveButton();
    EnableSceneChangeMoveButton();
    return isLoaded && ids.size() == steps.size();
}

SessionRecord KlipraMac::Record() {
    SessionRecord record{filePath, m_session->OpenedFile(), SavedName(histories.front()), {}};
    std::vector<int> ids = historyRoot.GetIds();
    std::sort(ids.begin(), ids.end()); // as they were made: parents come first
    std::map<int, int> steps;          // by entry
    for (const int id : ids) {
        const HistoryItem& item = *FindHistoryItem(id);
        if (id == historyRoot.id) {
            steps[id] = -1;
            continue;
        }
        steps[id] = static_cast<int>(record.steps.size());
        record.steps.push_back({steps.at(item.parentId), item.edit, item.range,
                                FindHistoryItem(item.parentId)->cutPositions, PieceOf(item.name),
                                item.saved, SavedName(item)});
    }
    return record;
}

void KlipraMac::WriteJournal() {
    if (m_session == nullptr || m_isRestoring) {
        return; // what is restored is in the journal already
    }
    m_isJournalCurrent = true;
    if (!DoWork([this, record = Record()] { return m_session->Journal().Write(record); })) {
        TellThatEditsDoNotSurvive();
    }
}

void KlipraMac::TellThatEditsDoNotSurvive() {
    if (!m_hasToldOfJournal) {
        m_hasToldOfJournal = true;
        appDelegate->editsDoNotSurvive();
    }
}
