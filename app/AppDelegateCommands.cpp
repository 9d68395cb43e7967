#include "app/AppDelegate.h"
#include "app/HistoryOutline.h"
#include "app/LongWork.h"
#include "app/PreferenceWindowController.h"
#include "platform/Desktop.h"
#include "ui_MainWindow.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>

#include <algorithm>

namespace {

constexpr int kNoEntry = -1; // to the outline: the selection stays

} // namespace

void AppDelegate::ConnectCommands() {
    struct Control {
        const char* button; // none: null
        const char* menuItem;
        Command command;
    };
    static constexpr Control kControls[] = {
        {"PlayButton", nullptr, &AppDelegate::PlayBtnClick},
        {"StopButton", nullptr, &AppDelegate::StopBtnClick},
        {nullptr, "PlayOrStopMenu", &AppDelegate::PlayOrStopMenuClick},
        {"BeginButton", "BeginMenu", &AppDelegate::BeginBtnClick},
        {"LastButton", "LastMenu", &AppDelegate::LastBtnClick},
        {"SetStartButton", "SetStartMenu", &AppDelegate::SetStartBtnClick},
        {"SetEndButton", "SetEndMenu", &AppDelegate::SetEndBtnClick},
        {"DetectButton", "DetectMenu", &AppDelegate::DetectBtnClick},
        {"ScNextButton", "ScNextMenu", &AppDelegate::ScNextBtnClick},
        {"ScBackButton", "ScBackMenu", &AppDelegate::ScBackBtnClick},
        {nullptr, "MoveMenu", &AppDelegate::MoveMenuClick},
        {"ToolButton", nullptr, &AppDelegate::ToolBtnClick},
        {nullptr, "PreferenceMenu", &AppDelegate::ShowPreferenceClick},
        {"CutExtButton", "CutExtMenu", &AppDelegate::CutExtBtnClick},
        {"CutDelButton", "CutDelMenu", &AppDelegate::CutDelBtnClick},
        {nullptr, "CutUndoMenu", &AppDelegate::CutUndoMenuClick},
        {"SplitButton", "SplitMenu", &AppDelegate::SplitButtonClick},
        {"SaveRangeButton", "SaveRangeMenu", &AppDelegate::SaveRangeBtnClick},
        {"SaveButton", "SaveMenu", &AppDelegate::SaveBtnClick},
        {nullptr, "CloseMenu", &AppDelegate::CloseBtnClick},
        {nullptr, "QuitMenu", &AppDelegate::CloseBtnClick},
        {nullptr, "AboutMenu", &AppDelegate::AboutMenuClick},
        {nullptr, "ZoomInMenu", &AppDelegate::ZoomInMenuClick},
        {nullptr, "ZoomOutMenu", &AppDelegate::ZoomOutMenuClick},
        {nullptr, "Zoom1Menu", &AppDelegate::Zoom1MenuClick},
        {nullptr, "Zoom2Menu", &AppDelegate::Zoom2MenuClick},
        {nullptr, "Zoom5Menu", &AppDelegate::Zoom5MenuClick},
        {nullptr, "Zoom10Menu", &AppDelegate::Zoom10MenuClick},
        {nullptr, "Zoom20Menu", &AppDelegate::Zoom20MenuClick},
        {nullptr, "Zoom50Menu", &AppDelegate::Zoom50MenuClick},
        {nullptr, "Zoom100Menu", &AppDelegate::Zoom100MenuClick},
    };
    for (const Control& control : kControls) {
        const Command command = control.command;
        if (control.button != nullptr) {
            auto* const button = window.findChild<QAbstractButton*>(control.button);
            connect(button, &QAbstractButton::clicked, this,
                    [=, this] { (this->*command)(button); });
        }
        if (control.menuItem != nullptr) {
            auto* const item = window.findChild<QAction*>(control.menuItem);
            connect(item, &QAction::triggered, this, [=, this] { (this->*command)(item); });
        }
    }
    // Plus needs the shift key on most keyboards: the keys that bear it count without it too.
    m_ui->ZoomInMenu->setShortcuts({QKeySequence("+"), QKeySequence("="), QKeySequence(";")});
}

void AppDelegate::PlayBtnClick(QObject* /*sender*/) {
    pKlipraMac->PlayStart();
}

void AppDelegate::StopBtnClick(QObject* /*sender*/) {
    pKlipraMac->PlayStop();
}

void AppDelegate::PlayOrStopMenuClick(QObject* /*sender*/) {
    pKlipraMac->PlayOrStop();
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
    EnableCutButton();
    Redraw();
    RequestRefresh();
}

void AppDelegate::SetEndBtnClick(QObject* /*sender*/) {
    pKlipraMac->SetEndPosition();
    EnableCutButton();
    Redraw();
    RequestRefresh();
}

void AppDelegate::DetectBtnClick(QObject* /*sender*/) {
    {
        const LongWork work(*m_ui->statusBar, "無音部分を検出しています…");
        pKlipraMac->SearchSceanChange();
    }
    EnableSceneChangeMoveButton();
    ShowPosition();
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

void AppDelegate::CutExtBtnClick(QObject* /*sender*/) {
    const LongWork work(*m_ui->statusBar, "抽出しています…");
    pKlipraMac->Cut(true);
}

void AppDelegate::CutDelBtnClick(QObject* /*sender*/) {
    {
        const LongWork work(*m_ui->statusBar, "削除しています…");
        pKlipraMac->Cut(false);
    }
    ShowPosition();
}

void AppDelegate::CutUndoMenuClick(QObject* /*sender*/) {
    m_historyOutline->Select(m_historyOutline->ParentIdOf(pKlipraMac->currentHistoryId));
}

void AppDelegate::SplitButtonClick(QObject* /*sender*/) {
    const LongWork work(*m_ui->statusBar, "分割しています…");
    if (!pKlipraMac->Split()) {
        refreshHistoryOutlineView(kNoEntry); // what was split before is gone from the tree already
    }
}

void AppDelegate::SaveRangeBtnClick(QObject* /*sender*/) {
    const LongWork work(*m_ui->statusBar, "範囲を保存しています…");
    pKlipraMac->SaveRange();
}

void AppDelegate::SaveBtnClick(QObject* /*sender*/) {
    const LongWork work(*m_ui->statusBar, "保存しています…");
    std::string path;
    if (pKlipraMac->Save(path)) {
        pKlipraMac->UpdateHistoryItem(path);
        EnableSaveButton();
        refreshHistoryOutlineView(kNoEntry);
    }
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
