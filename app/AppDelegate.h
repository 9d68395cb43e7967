#pragma once

#include "adaptor/KlipraMac.h"
#include "adaptor/KlipraMacDelegate.h"
#include "app/Audition.h"
#include "app/ControlRules.h"
#include "app/ElidedLabel.h"
#include "app/FileOpener.h"
#include "app/GoWindowController.h"
#include "app/HistoryTexts.h"
#include "app/LaunchCheck.h"
#include "app/MainViewForKeyHandle.h"
#include "app/PreferenceFields.h"
#include "app/QuietPlaces.h"
#include "app/StripAccessible.h"
#include "app/StripNavigator.h"
#include "app/StripSurroundings.h"
#include "app/WorkWatch.h"

#include <QMainWindow>
#include <QTimer>

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class HistoryOutline;
class QShortcut;

namespace Ui {
class MainWindow;
}

/// The program: launches, quits, and between the two turns the main window's commands into calls of
/// the engine, and what the engine says into the state of its controls.
///
/// Used on the main thread, except for the members of KlipraMacDelegate that say otherwise.
class AppDelegate final : public QObject,
                          public KlipraMacDelegate,
                          public MainViewForKeyHandleDelegate,
                          public GoWindowControllerDelegate,
                          public PreferenceDelegate {
    Q_OBJECT

public:
    AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;
    ~AppDelegate() override;

    // Launch and quit.

    /// Opens the file named in the process's arguments and shows the window; says why and asks for
    /// termination when that cannot be.
    void applicationDidFinishLaunching(const std::vector<std::string>& arguments);
    /// Asks whether to quit when something was edited, saved or not.
    /// @return whether the program may end
    [[nodiscard]] bool QueryToTerminate();
    bool windowShouldClose() { return QueryToTerminate(); }
    /// The desktop's session ends: asks the same question where that may be asked.
    /// @param session  a QSessionManager, which nobody but Qt can make
    template <typename Session>
    void sessionShouldEnd(Session& session) {
        if (session.allowsInteraction()) {
            const bool mayEnd = QueryToTerminate();
            session.release();
            if (!mayEnd) {
                session.cancel();
            }
        }
    }
    /// Destroys the engine, and with it the temporary files.
    void applicationWillTerminate();

    /// Why nothing may be saved to a path, for the person; empty where it may.
    QString ObjectionTo(const std::string& path) const;

    QMainWindow* GetWindow() { return &window; }
    KlipraMac* GetKlipra() { return pKlipraMac.get(); } ///< null before the launch succeeded

    // Commands.

    void PlayBtnClick(QObject* sender);
    void StopBtnClick(QObject* sender);
    void PlayOrStopMenuClick(QObject* sender);
    void BeginBtnClick(QObject* sender);
    void LastBtnClick(QObject* sender);
    void SetStartBtnClick(QObject* sender);
    void SetEndBtnClick(QObject* sender);
    void DetectBtnClick(QObject* sender);
    void ScNextBtnClick(QObject* sender);
    void ScBackBtnClick(QObject* sender);
    void MoveMenuClick(QObject* sender);
    void ToolBtnClick(QObject* sender);
    void ShowPreferenceClick(QObject* sender);
    void CutExtBtnClick(QObject* sender);
    void CutDelBtnClick(QObject* sender);
    void CutUndoMenuClick(QObject* sender); ///< goes to the entry that the current one is made from
    void RedoMenuClick(QObject* sender);    ///< goes back to the entry that undo has left
    void AuditionMenuClick(QObject* sender);
    void KeysMenuClick(QObject* sender);
    void SplitButtonClick(QObject* sender);
    void SaveRangeBtnClick(QObject* sender);
    void SaveBtnClick(QObject* sender);
    void SaveFinishedMenuClick(QObject* sender);
    void SaveRangeFinishedMenuClick(QObject* sender);
    void FinishHelpMenuClick(QObject* sender);
    void CloseBtnClick(QObject* sender);
    void AboutMenuClick(QObject* sender);
    void ZoomInMenuClick(QObject* sender);
    void ZoomOutMenuClick(QObject* sender);
    void Zoom1MenuClick(QObject* /*sender*/) { Zoom(1); }
    void Zoom2MenuClick(QObject* /*sender*/) { Zoom(2); }
    void Zoom5MenuClick(QObject* /*sender*/) { Zoom(5); }
    void Zoom10MenuClick(QObject* /*sender*/) { Zoom(10); }
    void Zoom20MenuClick(QObject* /*sender*/) { Zoom(20); }
    void Zoom50MenuClick(QObject* /*sender*/) { Zoom(50); }
    void Zoom100MenuClick(QObject* /*sender*/) { Zoom(100); }

    // What the engine says.

    void enableTimer() override;
    void disableTimer() override;
    void Zoom(int factor) override;
    void enableZoomMenu() override;
    void EnableCutButton() override;
    void EnablePlayStopButton(bool isPlaying) override;
    void EnableSaveButton() override;
    void EnableSceneChangeMoveButton() override;
    void AwaitWork(BackgroundWork& work) override;
    void setNeedRefresh(int count) override { needRefresh = count; }
    void refreshHistoryOutlineView(int id) override;
    void restoringEdits(int done, int count) override;
    void editsDoNotSurvive() override { m_journalLabel->show(); }

    // What the window and the dialogs say.

    void handleKeyCode(std::uint16_t keyCode) override;
    void goAtPosition(double seconds) override;
    double getMoveAmount() const override { return pKlipraMac->moveAmount; }
    void setMoveAmount(double seconds) override { pKlipraMac->moveAmount = seconds; }
    float getThresholdLevel() const override { return pKlipraMac->thresholdLevel; }
    void setThresholdLevel(float level) override { pKlipraMac->thresholdLevel = level; }
    float getThresholdTime() const override { return pKlipraMac->thresholdTime; }
    void setThresholdTime(float seconds) override { pKlipraMac->thresholdTime = seconds; }

Q_SIGNALS:
    /// The program is to end, with this exit code.
    void terminate(int exitCode);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    using Command = void (AppDelegate::*)(QObject* sender);

    void BeginCommand();
    void ConnectCommands();
    void Translate();
    template <typename Edit>
    void DoEdit(const QString& what, Edit edit);
    void NoteLength();
    std::array<QAction*, kZoomFactors.size()> ZoomItems() const; // one for each factor
    void SetUpStrip();
    void SetUpStatusBar();
    void OpenFile(const LaunchFile& file);
    void RequestRefresh();
    void onTick();
    void Redraw();
    void MarksDidChange();
    void ShowPosition();
    void ShowStatus();
    /// How much of the current entry's levels is known, 0 to 1.
    double LevelsShare() const;
    void AwaitLevels();
    void AbandonSearch();
    void Search();
    void StopPlayback();
    [[nodiscard]] bool DoWork(const QString& what, const std::function<bool()>& work);
    void ShowFailure();
    void ShowSaved();
    void SaveEntry(const QString& what, bool (Klipra::*save)(std::string& path));
    /// What has come of a command; stays in the status bar until the next one.
    void ShowMessage(const QString& text);
    void SwitchPlayControls(bool isPlaying);
    void EnableUndo();
    void SelectedEntryDidChange(int id);

    // The outlets; the widgets are the window's, whose end the event filter still sees.
    const std::unique_ptr<Ui::MainWindow> m_ui;
    QMainWindow window;
    std::unique_ptr<HistoryOutline> m_historyOutline;
    std::unique_ptr<KlipraMac> pKlipraMac;
    std::unique_ptr<GoWindowController> goWindowController; // the last one opened
    StripSurroundings* m_stripSurroundings = nullptr;       // the window's
    std::unique_ptr<StripNavigator> m_navigator;
    std::unique_ptr<QuietPlaces> m_quietPlaces;
    FileOpener* m_fileOpener = nullptr; // the window's
    Audition m_audition;
    bool m_isAuditionStopped = false; // by the command under way
    HistoryTexts m_historyTexts;
    StripSpeech m_stripSpeech;
    std::vector<int> m_undone;        // entries that undo has left, the last one last
    QTimer myTimer;                   // of the refresh
    WorkWatch* m_workWatch = nullptr; // the window's
    QShortcut* m_escape = nullptr;    // abandons the pending search
    bool m_isSearchPending = false;   // until the levels are known
    QString m_workText;               // what the command under way does

    // In the status bar, which owns them.
    ElidedLabel* const m_positionLabel = new ElidedLabel;
    ElidedLabel* const m_fileLabel = new ElidedLabel;
    ElidedLabel* const m_rangeLabel = new ElidedLabel;
    ElidedLabel* const m_scenesLabel = new ElidedLabel;
    ElidedLabel* const m_messageLabel = new ElidedLabel;
    ElidedLabel* const m_readFailureLabel = new ElidedLabel;
    ElidedLabel* const m_waveformLabel = new ElidedLabel;
    ElidedLabel* const m_outputLabel = new ElidedLabel;  // shown where there is no audio output
    ElidedLabel* const m_journalLabel = new ElidedLabel; // shown where edits do not survive

    /// Ticks that still redraw though nothing plays. Scan thread -> main; no other data hang on it.
    std::atomic<int> needRefresh{0};
};
