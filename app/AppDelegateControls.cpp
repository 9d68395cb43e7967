#include "app/AppDelegate.h"
#include "app/FailureTexts.h"
#include "app/FinishTexts.h"
#include "app/HistoryOutline.h"
#include "app/KeyCodes.h"
#include "app/StatusTexts.h"
#include "ui_MainWindow.h"

#include <QFile>
#include <QThread>

#include <algorithm>

void AppDelegate::enableTimer() {
    myTimer.start();
}

void AppDelegate::disableTimer() {
    myTimer.stop();
}

void AppDelegate::onTick() {
    const bool isPlaying = pKlipraMac->playing;
    int count = needRefresh;
    if (!isPlaying && count < 1) {
        disableTimer();
        return;
    }
    Redraw();
    AwaitLevels();
    if (isPlaying) {
        m_ui->waveScrollArea->Follow();
    }
    if (count > 0) {
        // Not where the scan has set a new count meanwhile: that one would be lost.
        needRefresh.compare_exchange_strong(count, count - 1);
    }
}

void AppDelegate::RequestRefresh() {
    int none = 0;
    needRefresh.compare_exchange_strong(none, 1); // a scan under way has asked for more
}

void AppDelegate::Redraw() {
    m_ui->waveView->display();
    m_quietPlaces->Refresh();
    m_stripSurroundings->Refresh();
    m_stripSpeech.Tell(*m_ui->waveView);
    ShowStatus();
}

void AppDelegate::MarksDidChange() {
    EnableCutButton();
    Redraw();
}

void AppDelegate::ShowPosition() {
    Redraw();
    m_ui->waveScrollArea->Follow();
}

void AppDelegate::ShowMessage(const QString& text) {
    m_messageLabel->setText(text);
}

void AppDelegate::AwaitWork(BackgroundWork& work) {
    AbandonSearch(); // another entry follows
    ShowMessage(m_workText);
    m_workWatch->Await(work);
    ShowMessage({});
}

void AppDelegate::restoringEdits(int done, int count) {
    m_workText = tr("編集を復元しています… %1/%2").arg(done + 1).arg(count);
}

bool AppDelegate::DoWork(const QString& what, const std::function<bool()>& work) {
    m_workText = what;
    return pKlipraMac->DoWork(work);
}

void AppDelegate::ShowFailure() {
    const EditFailure& failure = pKlipraMac->GetLastFailure();
    ShowMessage(failure.IsCancelled() ? tr("キャンセルしました") : FailureText(failure));
}

void AppDelegate::ShowSaved() {
    if (const std::string& path = pKlipraMac->GetLastOutput(); !path.empty()) {
        const QString saved = tr("保存しました: %1").arg(QFile::decodeName(path.c_str()));
        const QString notes = FinishNotesText(pKlipraMac->GetFinishNotes());
        ShowMessage(notes.isEmpty() ? saved : notes + QStringLiteral(" / ") + saved);
    } else {
        ShowFailure();
    }
}

void AppDelegate::StopPlayback() {
    if (pKlipraMac->playing) {
        pKlipraMac->PlayStop();
    }
}

void AppDelegate::ShowStatus() {
    const StatusTexts texts = MakeStatusTexts(*pKlipraMac);
    const std::pair<QLabel*, const QString*> labels[] = {{m_positionLabel, &texts.position},
                                                         {m_fileLabel, &texts.file},
                                                         {m_rangeLabel, &texts.range},
                                                         {m_scenesLabel, &texts.sceneChanges},
                                                         {m_readFailureLabel, &texts.readFailure},
                                                         {m_waveformLabel, &texts.waveform}};
    for (const auto& [label, text] : labels) {
        label->setText(*text);
    }
    m_outputLabel->setVisible(!KlipraMac::HasOutput());
    NoteLength();
}

// While an edit is under way the stream may still be another entry's than the current one's.
void AppDelegate::NoteLength() {
    if (m_historyOutline == nullptr || pKlipraMac->IsBusy() || pKlipraMac->channel == 0) {
        return;
    }
    const long long length = pKlipraMac->PositionToMilliSeconds(pKlipraMac->length);
    if (m_historyTexts.NoteLength(pKlipraMac->currentHistoryId, length)) {
        m_historyOutline->DetailsDidChange();
    }
}

std::array<QAction*, kZoomFactors.size()> AppDelegate::ZoomItems() const {
    return {m_ui->Zoom1Menu,  m_ui->Zoom2Menu,  m_ui->Zoom5Menu,  m_ui->Zoom10Menu,
            m_ui->Zoom20Menu, m_ui->Zoom50Menu, m_ui->Zoom100Menu};
}

void AppDelegate::Zoom(int factor) {
    pKlipraMac->zoom = factor;
    const auto items = ZoomItems();
    for (std::size_t i = 0; i < items.size(); ++i) {
        items[i]->setChecked(kZoomFactors[i] == factor);
    }
    m_ui->waveView->LayOut(factor * m_ui->mainView->width());
}

void AppDelegate::enableZoomMenu() {
    const auto items = ZoomItems();
    for (std::size_t i = 0; i < items.size(); ++i) {
        items[i]->setEnabled(IsZoomAllowed(kZoomFactors[i], pKlipraMac->maxZoom));
    }
}

void AppDelegate::EnableCutButton() {
    const int count = pKlipraMac->GetDefinedCutPositionCount();
    for (QAbstractButton* const button :
         {m_ui->CutExtButton, m_ui->CutDelButton, m_ui->SaveRangeButton}) {
        button->setEnabled(CanCut(count));
    }
    for (QAction* const item : {m_ui->CutExtMenu, m_ui->CutDelMenu, m_ui->SaveRangeMenu,
                                m_ui->SaveRangeFinishedMenu, m_ui->AuditionMenu}) {
        item->setEnabled(CanCut(count));
    }
    m_ui->SplitButton->setEnabled(CanSplit(count));
    m_ui->SplitMenu->setEnabled(CanSplit(count));
}

void AppDelegate::EnablePlayStopButton(bool isPlaying) {
    if (QThread::currentThread() == thread()) {
        SwitchPlayControls(isPlaying);
        return;
    }
    // By the time this is done playback may have been started again: what counts is the state then.
    QMetaObject::invokeMethod(
        this, [this] { SwitchPlayControls(pKlipraMac->playing); }, Qt::QueuedConnection);
}

void AppDelegate::SwitchPlayControls(bool isPlaying) {
    m_ui->PlayButton->setEnabled(!isPlaying);
    m_ui->StopButton->setEnabled(isPlaying);
    if (!isPlaying && pKlipraMac->GetWaveContext()) {
        Redraw(); // where it has stopped, and not where the last tick has seen it
    }
}

void AppDelegate::EnableSaveButton() {
    const bool canSave = CanSave(pKlipraMac->histories.size());
    m_ui->SaveButton->setEnabled(canSave);
    m_ui->SaveMenu->setEnabled(canSave);
    m_ui->SaveFinishedMenu->setEnabled(canSave);
}

void AppDelegate::EnableSceneChangeMoveButton() {
    const bool canMove = CanMoveBetweenScenes(pKlipraMac->sceneChangePositions.size());
    m_ui->ScBackButton->setEnabled(canMove);
    m_ui->ScNextButton->setEnabled(canMove);
    m_ui->ScBackMenu->setEnabled(canMove);
    m_ui->ScNextMenu->setEnabled(canMove);
}

void AppDelegate::EnableUndo() {
    m_ui->CutUndoMenu->setEnabled(m_historyOutline->ParentIdOf(pKlipraMac->currentHistoryId) != 0);
    m_ui->RedoMenu->setEnabled(!m_undone.empty());
}

void AppDelegate::refreshHistoryOutlineView(int id) {
    if (id == pKlipraMac->currentHistoryId) {
        m_undone.clear(); // an edit, which may have taken their place
    }
    m_historyOutline->Refresh(pKlipraMac.get(), id);
    EnableUndo();
}

void AppDelegate::SelectedEntryDidChange(int id) {
    if (id != pKlipraMac->currentHistoryId) {
        StopPlayback();
        AbandonSearch();
        m_audition.Stop();
        m_undone.clear();
    }
    pKlipraMac->SelectHistory(id);
    EnableUndo();
    Redraw();
}

void AppDelegate::handleKeyCode(std::uint16_t keyCode) {
    const bool isAuditionStopped = m_audition.Stop();
    if (keyCode == KeyCode::kSpace && !isAuditionStopped) {
        pKlipraMac->PlayOrStop();
    } else if (keyCode == KeyCode::kLeftArrow || keyCode == KeyCode::kRightArrow) {
        m_ui->waveView->handleKeyCode(keyCode);
        m_ui->waveScrollArea->Follow();
    }
}

void AppDelegate::goAtPosition(double seconds) {
    pKlipraMac->SetCurrentPositionInSeconds(std::max(seconds, 0.0));
    ShowPosition();
}
