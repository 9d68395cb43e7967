#include "app/AppDelegate.h"
#include "app/HistoryOutline.h"

#include <utility>

// The commands that make entries of the history, go between them and save them.

namespace {

constexpr int kNoEntry = -1; // to the outline: the selection stays

} // namespace

template <typename Edit>
void AppDelegate::DoEdit(const QString& what, Edit edit) {
    StopPlayback();
    m_workText = what;
    const QString replaced = m_historyTexts.ReplacedBy(*pKlipraMac, pKlipraMac->currentHistoryId);
    const bool isDone = edit();
    ShowStatus();
    if (isDone) {
        ShowMessage(replaced);
    } else {
        ShowFailure();
    }
}

void AppDelegate::CutExtBtnClick(QObject* /*sender*/) {
    DoEdit(tr("抽出しています…"), [this] { return pKlipraMac->Cut(true); });
}

void AppDelegate::CutDelBtnClick(QObject* /*sender*/) {
    DoEdit(tr("削除しています…"), [this] { return pKlipraMac->Cut(false); });
    ShowPosition();
}

void AppDelegate::CutUndoMenuClick(QObject* /*sender*/) {
    std::vector<int> undone = std::move(m_undone); // selecting forgets them
    undone.push_back(pKlipraMac->currentHistoryId);
    m_historyOutline->Select(m_historyOutline->ParentIdOf(pKlipraMac->currentHistoryId));
    m_undone = std::move(undone);
    EnableUndo();
}

void AppDelegate::RedoMenuClick(QObject* /*sender*/) {
    if (m_undone.empty()) {
        return;
    }
    std::vector<int> undone = std::move(m_undone);
    m_historyOutline->Select(undone.back());
    undone.pop_back();
    m_undone = std::move(undone);
    EnableUndo();
}

void AppDelegate::SplitButtonClick(QObject* /*sender*/) {
    DoEdit(tr("分割しています…"), [this] {
        const int parentId = pKlipraMac->currentHistoryId;
        const bool isSplit = pKlipraMac->Split();
        if (!isSplit) {
            // What was split before is gone from the tree already. Of the pieces written now the
            // last one is current, but what is heard and seen is still what was to be split.
            pKlipraMac->SelectHistory(parentId);
            refreshHistoryOutlineView(parentId);
        }
        return isSplit;
    });
}

void AppDelegate::SaveRangeBtnClick(QObject* /*sender*/) {
    m_workText = tr("範囲を保存しています…");
    pKlipraMac->SaveRange();
    ShowSaved();
}

void AppDelegate::SaveRangeFinishedMenuClick(QObject* /*sender*/) {
    m_workText = tr("範囲を仕上げて保存しています…");
    pKlipraMac->SaveRangeFinished();
    ShowSaved();
}

void AppDelegate::SaveBtnClick(QObject* /*sender*/) {
    SaveEntry(tr("保存しています…"), &Klipra::Save);
}

void AppDelegate::SaveFinishedMenuClick(QObject* /*sender*/) {
    SaveEntry(tr("仕上げて保存しています…"), &Klipra::SaveFinished);
}

void AppDelegate::SaveEntry(const QString& what, bool (Klipra::*save)(std::string& path)) {
    m_workText = what;
    std::string path;
    if ((pKlipraMac.get()->*save)(path)) {
        pKlipraMac->UpdateHistoryItem(path);
        m_historyTexts.NoteSaved(pKlipraMac->currentHistoryId, path);
        EnableSaveButton();
        refreshHistoryOutlineView(kNoEntry);
    }
    ShowSaved();
}
