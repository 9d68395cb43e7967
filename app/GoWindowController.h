#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class GoWindow;
}

/// Is told where to go.
class GoWindowControllerDelegate {
public:
    virtual ~GoWindowControllerDelegate() = default;

    /// @param seconds  as it was typed: may be negative, or beyond the end
    virtual void goAtPosition(double seconds) = 0;
};

/// The go-to dialog: shows a time as minutes, seconds and milliseconds, and sends the one that is
/// there when the person presses OK. A window beside the main one, which goes on; made anew for
/// every use.
class GoWindowController {
public:
    /// @param parent  the window that this one stays in front of, and is owned by while it lives
    explicit GoWindowController(QWidget* parent);
    GoWindowController(const GoWindowController&) = delete;
    GoWindowController& operator=(const GoWindowController&) = delete;
    ~GoWindowController();

    void setDelegate(GoWindowControllerDelegate* newDelegate) { m_delegate = newDelegate; }

    /// Fills the fields from `seconds` and shows the window in front of its parent.
    void showWindow();
    QDialog* window() const { return m_window.get(); }

    double seconds = 0.0; ///< the time to show; after OK, the time that was sent

private:
    void windowDidLoad();
    void OKButtonClick();
    void CancelBtnClick();

    std::unique_ptr<QDialog> m_window;
    std::unique_ptr<Ui::GoWindow> m_ui;
    GoWindowControllerDelegate* m_delegate = nullptr; // not owned
};
