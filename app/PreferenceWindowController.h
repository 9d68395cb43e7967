#pragma once

#include "app/PreferenceFields.h"

#include <QDialog>

#include <memory>

namespace Ui {
class PreferencesWindow;
}

/// The preferences dialog: shows the settings and, whichever way it is closed, sets them to what
/// its fields then hold. A window beside the main one, which goes on.
class PreferenceWindowController {
public:
    /// The one of this process. Made on the first call; its window is to be destroyed, with
    /// closeForGood, before the application is.
    static PreferenceWindowController& sharedPreferenceWindowController();

    PreferenceWindowController();
    PreferenceWindowController(const PreferenceWindowController&) = delete;
    PreferenceWindowController& operator=(const PreferenceWindowController&) = delete;
    ~PreferenceWindowController();

    /// Whose settings are shown and set; not owned.
    void setDelegate(PreferenceDelegate* newDelegate) { m_delegate = newDelegate; }

    /// Shows the window. Its fields are filled the first time; later they hold what they held when
    /// it was closed.
    /// @param parent  the window that this one stays in front of
    void showWindow(QWidget* parent);
    QDialog* window() const { return m_window.get(); } ///< null before it was first shown

    /// Destroys the window without setting anything, and forgets the delegate.
    void closeForGood();

private:
    void windowDidLoad();
    void windowWillClose();

    std::unique_ptr<Ui::PreferencesWindow> m_ui;
    std::unique_ptr<QDialog> m_window;
    PreferenceDelegate* m_delegate = nullptr;
};
