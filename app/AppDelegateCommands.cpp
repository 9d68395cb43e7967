#include "app/AppDelegate.h"
#include "app/FinishTexts.h"
#include "app/KeyList.h"
#include "app/PreferenceWindowController.h"
#include "platform/Desktop.h"
#include "ui_MainWindow.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QShortcut>

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

// What the last command had to say is over, and so is what it let be heard.
void AppDelegate::BeginCommand() {
    ShowMessage({});
    m_isAuditionStopped = m_audition.Stop();
}

void AppDelegate::ConnectCommands() {
    for (const QAction* const item : window.findChildren<QAction*>()) {
        connect(item, &QAction::triggered, this, &AppDelegate::BeginCommand);
    }
    for (const QAbstractButton* const button : window.findChildren<QAbstractButton*>()) {
        connect(button, &QAbstractButton::clicked, this, &AppDelegate::BeginCommand);
    }
    struct Control {
        QAbstractButton* button; // none: null
        QAction* menuItem;       // none: null
        Command command;
    };
    const Control controls[] = {
        {m_ui->PlayButton, nullptr, &AppDelegate::PlayBtnClick},
        {m_ui->StopButton, nullptr, &AppDelegate::StopBtnClick},
        {nullptr, m_ui->PlayOrStopMenu, &AppDelegate::PlayOrStopMenuClick},
        {m_ui->BeginButton, m_ui->BeginMenu, &AppDelegate::BeginBtnClick},
        {m_ui->LastButton, m_ui->LastMenu, &AppDelegate::LastBtnClick},
        {m_ui->SetStartButton, m_ui->SetStartMenu, &AppDelegate::SetStartBtnClick},
        {m_ui->SetEndButton, m_ui->SetEndMenu, &AppDelegate::SetEndBtnClick},
        {m_ui->DetectButton, m_ui->DetectMenu, &AppDelegate::DetectBtnClick},
        {m_ui->ScNextButton, m_ui->ScNextMenu, &AppDelegate::ScNextBtnClick},
        {m_ui->ScBackButton, m_ui->ScBackMenu, &AppDelegate::ScBackBtnClick},
        {nullptr, m_ui->MoveMenu, &AppDelegate::MoveMenuClick},
        {m_ui->ToolButton, nullptr, &AppDelegate::ToolBtnClick},
        {nullptr, m_ui->PreferenceMenu, &AppDelegate::ShowPreferenceClick},
        {m_ui->CutExtButton, m_ui->CutExtMenu, &AppDelegate::CutExtBtnClick},
        {m_ui->CutDelButton, m_ui->CutDelMenu, &AppDelegate::CutDelBtnClick},
        {nullptr, m_ui->CutUndoMenu, &AppDelegate::CutUndoMenuClick},
        {m_ui->SplitButton, m_ui->SplitMenu, &AppDelegate::SplitButtonClick},
        {m_ui->SaveRangeButton, m_ui->SaveRangeMenu, &AppDelegate::SaveRangeBtnClick},
        {m_ui->SaveButton, m_ui->SaveMenu, &AppDelegate::SaveBtnClick},
        {nullptr, m_ui->SaveFinishedMenu, &AppDelegate::SaveFinishedMenuClick},
        {nullptr, m_ui->SaveRangeFinishedMenu, &AppDelegate::SaveRangeFinishedMenuClick},
        {nullptr, m_ui->CloseMenu, &AppDelegate::CloseBtnClick},
        {nullptr, m_ui->QuitMenu, &AppDelegate::CloseBtnClick},
        {nullptr, m_ui->RedoMenu, &AppDelegate::RedoMenuClick},
        {nullptr, m_ui->AuditionMenu, &AppDelegate::AuditionMenuClick},
        {nullptr, m_ui->KeysMenu, &AppDelegate::KeysMenuClick},
        {nullptr, m_ui->FinishHelpMenu, &AppDelegate::FinishHelpMenuClick},
        {nullptr, m_ui->AboutMenu, &AppDelegate::AboutMenuClick},
        {nullptr, m_ui->ZoomInMenu, &AppDelegate::ZoomInMenuClick},
        {nullptr, m_ui->ZoomOutMenu, &AppDelegate::ZoomOutMenuClick},
        {nullptr, m_ui->Zoom1Menu, &AppDelegate::Zoom1MenuClick},
        {nullptr, m_ui->Zoom2Menu, &AppDelegate::Zoom2MenuClick},
        {nullptr, m_ui->Zoom5Menu, &AppDelegate::Zoom5MenuClick},
        {nullptr, m_ui->Zoom10Menu, &AppDelegate::Zoom10MenuClick},
        {nullptr, m_ui->Zoom20Menu, &AppDelegate::Zoom20MenuClick},
        {nullptr, m_ui->Zoom50Menu, &AppDelegate::Zoom50MenuClick},
        {nullptr, m_ui->Zoom100Menu, &AppDelegate::Zoom100MenuClick},
    };
    for (const Control& control : controls) {
        const auto run = [=, this](QObject* sender) { (this->*control.command)(sender); };
        if (control.button != nullptr) {
            connect(control.button, &QAbstractButton::clicked, this, [=] { run(control.button); });
        }
        if (control.menuItem != nullptr) {
            connect(control.menuItem, &QAction::triggered, this, [=] { run(control.menuItem); });
        }
    }
    // Only while there is something to abandon: an Escape that a dialog waits for is the dialog's.
    m_escape = new QShortcut(Qt::Key_Escape, &window);
    m_escape->setEnabled(false);
    connect(m_escape, &QShortcut::activated, this, &AppDelegate::AbandonSearch);
    // Plus needs the shift key on most keyboards: the keys that bear it count without it too.
    m_ui->ZoomInMenu->setShortcuts({Qt::Key_Plus, Qt::Key_Equal, Qt::Key_Semicolon});
}

void AppDelegate::PlayBtnClick(QObject* /*sender*/) {
    pKlipraMac->PlayStart();
}

void AppDelegate::StopBtnClick(QObject* /*sender*/) {
    pKlipraMac->PlayStop();
}

void AppDelegate::PlayOrStopMenuClick(QObject* /*sender*/) {
    if (!std::exchange(m_isAuditionStopped, false)) {
        pKlipraMac->PlayOrStop();
    }
}

void AppDelegate::BeginBtnClick(QObject* /*sender*/) {
    pKlipraMac->MovePositionTop();
    ShowPosition();
    RequestRefresh();
}

void AppDelegate::LastBtnClick(QObject* /*sender*/) {
    pKlipraMac->MovePositionLast();
    ShowPosition();
    RequestRefresh();
}

void AppDelegate::SetStartBtnClick(QObject* /*sender*/) {
    pKlipraMac->SetStartPosition();
    MarksDidChange();
    RequestRefresh();
}

void AppDelegate::SetEndBtnClick(QObject* /*sender*/) {
    pKlipraMac->SetEndPosition();
    MarksDidChange();
    RequestRefresh();
}

void AppDelegate::DetectBtnClick(QObject* /*sender*/) {
    // What is nearly there is waited for.
    constexpr auto kPatience = std::chrono::milliseconds(100);
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (LevelsShare() < 1.0 && std::chrono::steady_clock::now() < end) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    m_isSearchPending = true;
    m_escape->setEnabled(true);
    AwaitLevels();
}

double AppDelegate::LevelsShare() const {
    const auto& wave = pKlipraMac->GetWaveContext();
    return wave ? static_cast<double>(wave->GetFinishedColumns()) / wave->GetSize().width : 1.0;
}

// The scan decodes the file anyway, and the search is then answered from what it has found. Until
// then the window is nobody's prisoner.
void AppDelegate::AwaitLevels() {
    if (!m_isSearchPending) {
        return;
    }
    const double share = LevelsShare();
    if (share < 1.0) {
        ShowMessage(tr("無音部分を検出しています…"));
        m_workWatch->ShowShare(share);
        return;
    }
    AbandonSearch();
    Search();
}

void AppDelegate::AbandonSearch() {
    if (std::exchange(m_isSearchPending, false)) {
        m_escape->setEnabled(false);
        ShowMessage({});
        m_workWatch->HideShare();
    }
}

void AppDelegate::Search() {
    pKlipraMac->SearchSceanChange();
    EnableSceneChangeMoveButton();
    ShowPosition();
    if (pKlipraMac->channel != 0 && pKlipraMac->sceneChangePositions.empty()) {
        ShowMessage(tr("無音部分は見つかりませんでした（レベル %1 未満が %2 秒以上）")
                        .arg(static_cast<double>(pKlipraMac->thresholdLevel))
                        .arg(static_cast<double>(pKlipraMac->thresholdTime)));
    }
}

void AppDelegate::ScNextBtnClick(QObject* /*sender*/) {
    if (pKlipraMac->MovePositionNext()) {
        ShowPosition();
    }
}

void AppDelegate::ScBackBtnClick(QObject* /*sender*/) {
    if (pKlipraMac->MovePositionBack()) {
        ShowPosition();
    }
}

void AppDelegate::MoveMenuClick(QObject* /*sender*/) {
    goWindowController = std::make_unique<GoWindowController>(&window);
    goWindowController->setDelegate(this);
    // Below 0 where there is no stream.
    goWindowController->seconds = std::max(pKlipraMac->GetCurrentPositionInSeconds(), 0.0);
    goWindowController->showWindow();
}

void AppDelegate::ToolBtnClick(QObject* /*sender*/) {
    ShowPreferenceClick(this);
}

void AppDelegate::ShowPreferenceClick(QObject* /*sender*/) {
    auto& controller = PreferenceWindowController::sharedPreferenceWindowController();
    controller.setDelegate(this);
    controller.showWindow(&window);
}

void AppDelegate::AuditionMenuClick(QObject* /*sender*/) {
    if (pKlipraMac->GetDefinedCutPositionCount() != 2) {
        return;
    }
    StopPlayback();
    m_workText = tr("試聴の準備をしています…");
    if (!m_audition.Play(*pKlipraMac)) {
        ShowFailure();
    }
}

void AppDelegate::KeysMenuClick(QObject* /*sender*/) {
    ShowKeyList(&window, *m_ui->menuBar);
}

void AppDelegate::FinishHelpMenuClick(QObject* /*sender*/) {
    ShowFinishHelp(&window);
}

void AppDelegate::CloseBtnClick(QObject* /*sender*/) {
    if (QueryToTerminate()) {
        Q_EMIT terminate(0);
    }
}

void AppDelegate::AboutMenuClick(QObject* /*sender*/) {
    ShowMsg("Klipra " + QApplication::applicationVersion().toStdString());
}

void AppDelegate::ZoomInMenuClick(QObject* /*sender*/) {
    pKlipraMac->ZoomDelta(ZoomAbove(pKlipraMac->zoom, pKlipraMac->maxZoom) - pKlipraMac->zoom);
}

void AppDelegate::ZoomOutMenuClick(QObject* /*sender*/) {
    pKlipraMac->ZoomDelta(ZoomBelow(pKlipraMac->zoom) - pKlipraMac->zoom);
}
