#pragma once

#include <QWidget>

#include <cstdint>

/// Is handed the keys pressed in the main window.
class MainViewForKeyHandleDelegate {
public:
    virtual ~MainViewForKeyHandleDelegate() = default;

    /// @param keyCode  see KeyCode
    virtual void handleKeyCode(std::uint16_t keyCode) = 0;
};

/// The main window's content view: holds the keyboard focus, and hands every key to its delegate
/// and to nobody else.
class MainViewForKeyHandle : public QWidget {
public:
    using QWidget::QWidget;

    /// Not owned; null for nobody.
    void setDelegate(MainViewForKeyHandleDelegate* newDelegate) { m_delegate = newDelegate; }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    MainViewForKeyHandleDelegate* m_delegate = nullptr;
};
