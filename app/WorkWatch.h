#pragma once

#include <QObject>
#include <QPointer>

#include <vector>

class BackgroundWork;
class QMainWindow;
class QProgressBar;
class QPushButton;

/// Keeps a window alive while work is done on another thread: it goes on painting and playing,
/// shows how far the work is, and lets the person cancel it, but takes no other command.
class WorkWatch : public QObject {
    Q_OBJECT

public:
    /// Puts its progress bar and its button into the status bar, hidden.
    explicit WorkWatch(QMainWindow* window);

    /// Returns when the work is done. A request to close the window, or to end the program, cancels
    /// it and is passed on afterwards. Not to be called while it waits.
    void Await(BackgroundWork& work);
    bool IsWaiting() const { return m_work != nullptr; }

    /// Shows how far something is that nobody waits for, and the button that cancels it.
    /// @param share  0 to 1; negative where that is not known
    void ShowShare(double share);
    void HideShare();

Q_SIGNALS:
    /// The button was pressed; what is awaited has been cancelled already.
    void cancelled();
    /// The window was to be closed while the work was under way, which has ended now.
    void closeRequested();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void DisableCommands();
    void EnableCommands();
    void ShowProgress();

    QMainWindow* const m_window;
    QProgressBar* const m_progress;
    QPushButton* const m_cancel;
    BackgroundWork* m_work = nullptr; // awaited now
    std::vector<QPointer<QObject>> m_disabled;
    bool m_wasToClose = false;
};
